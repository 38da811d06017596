// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrell {

/// A sentence of the program for the operator, put together from its own words and from names:
///
///     report.showInPanel1("File " + named(path) + " did not encrypt!");
///
/// It remembers which parts are names, so that a report for strangers can leave the names out. Only string literals
/// count as the program's own words; everything else must be added by `named` or `failureWords`. A new message is
/// therefore masked correctly without further work. The bytes of names are kept unchanged (see displayText).
class Message {
public:
    template <std::size_t N>
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is a message.
    Message(const char (&words)[N]) : text_(words), masked_(text_) {}
    template <std::size_t N>
    Message(char (&notConstant)[N]) = delete;

    /// As the operator sees it.
    [[nodiscard]] const std::string& text() const { return text_; }
    /// With "<…>" in the place of everything that is not the program's own words.
    [[nodiscard]] const std::string& masked() const { return masked_; }

    friend Message operator+(Message left, const Message& right) {
        left.text_ += right.text_;
        left.masked_ += right.masked_;
        return left;
    }

private:
    friend Message named(std::string_view text);
    friend Message failureWords(std::string_view text);
    Message(std::string text, std::string masked);

    std::string text_;
    std::string masked_;
};

/// A name of a file or folder, a time, or whatever else is not for strangers.
[[nodiscard]] Message named(std::string_view text);

/// The words of a failure. When they end with one of the host's own reasons, such as ": No space left on device", a
/// stranger sees that reason.
[[nodiscard]] Message failureWords(std::string_view text);

}  // namespace vantrell
