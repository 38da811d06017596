// SPDX-License-Identifier: MIT
#include "core/settings_format.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vantrell {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (one.size() != other.size()) return false;
    for (std::size_t i = 0; i < one.size(); ++i)
        if (lower(one[i]) != lower(other[i])) return false;
    return true;
}

// Reads the items of the line from left to right.
class ItemReader {
public:
    explicit ItemReader(std::string_view bytes) : rest_(bytes) {}

    bool operator()(std::string& field) {
        const auto item = next();
        if (!item || !quoted_) return false;
        field = *item;
        return true;
    }

    bool operator()(bool& field) {
        const auto item = next();
        if (!item || quoted_) return false;
        const bool isTrue = equalIgnoringCase(*item, "#TRUE#");
        if (!isTrue && !equalIgnoringCase(*item, "#FALSE#")) return false;
        field = isTrue;
        return true;
    }

    template <class Number>
    bool operator()(Number& field) {
        const auto item = next();
        if (!item) return false;
        double value = 0;
        const char* const end = item->data() + item->size();
        const auto [stop, error] = std::from_chars(item->data(), end, value);
        if (error != std::errc() || stop != end || !std::isfinite(value)) return false;
        value = std::nearbyint(value);
        if (value < std::numeric_limits<Number>::min() || value > std::numeric_limits<Number>::max()) return false;
        field = static_cast<Number>(value);
        return true;
    }

private:
    std::optional<std::string_view> next() {
        skipBlanks();
        if (rest_.empty()) return std::nullopt;
        quoted_ = rest_.front() == '"';
        return quoted_ ? quotedItem() : plainItem();
    }

    std::optional<std::string_view> quotedItem() {
        const std::size_t close = rest_.find('"', 1);
        if (close == std::string_view::npos) return std::nullopt;
        const std::string_view item = rest_.substr(1, close - 1);
        rest_.remove_prefix(close + 1);
        skipBlanks();
        if (rest_.empty()) return item;
        if (rest_.front() != ',') return std::nullopt;
        rest_.remove_prefix(1);
        return item;
    }

    std::string_view plainItem() {
        const std::size_t end = rest_.find_first_of(",\r\n");
        std::string_view item = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        const std::size_t last = item.find_last_not_of(kBlanks);
        return item.substr(0, last == std::string_view::npos ? 0 : last + 1);
    }

    void skipBlanks() {
        const std::size_t first = rest_.find_first_not_of(kBlanks);
        rest_.remove_prefix(first == std::string_view::npos ? rest_.size() : first);
    }

    std::string_view rest_;
    bool quoted_ = false;
};

class ItemWriter {
public:
    explicit ItemWriter(std::string& line) : line_(line) {}

    bool operator()(const std::string& field) { return put('"' + field + '"'); }
    bool operator()(bool field) { return put(field ? "#TRUE#" : "#FALSE#"); }
    bool operator()(std::int32_t field) { return put(std::to_string(field)); }
    bool operator()(std::int16_t field) { return put(std::to_string(field)); }

private:
    bool put(const std::string& item) {
        if (!line_.empty()) line_ += ',';
        line_ += item;
        return true;
    }

    std::string& line_;
};

}  // namespace

std::string formatSettings(const SettingsRecord& settings) {
    std::string line;
    visitSettings([&, write = ItemWriter(line)](const auto& row) mutable { return write(settings.*row.field); });
    return line + "\r\n";
}

int parseSettings(std::string_view bytes, SettingsRecord& settings) {
    // Editors put one before the first item.
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    return visitSettings([&, read = ItemReader(bytes)](const auto& row) mutable { return read(settings.*row.field); });
}

}  // namespace vantrell
