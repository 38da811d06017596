// SPDX-License-Identifier: MIT
#include "activitylog/history_reader.h"

#include <algorithm>
#include <utility>

namespace vantrell {

HistoryReader::HistoryReader(Path logFolder, const FileReading& files, EventLoop& loop, HistoryReaderView& view)
    : logFolder_(std::move(logFolder)),
      files_(files),
      loop_(loop),
      view_(view),
      reads_(loop.queue()),
      copies_(loop.queue()) {}

void HistoryReader::readtheHistoryfile(const Path& fileName) {
    waiting_.push_back(fileName);
    if (!reading_.files.empty()) reading_.files += ", ";
    reading_.files += fileName;
    if (std::exchange(reading_.isUnderWay, true)) return;
    reads_.start(readWaiting());
}

Task<void> HistoryReader::readWaiting() {
    while (!waiting_.empty()) {
        Path fileName = std::move(waiting_.front());
        waiting_.pop_front();
        co_await readOne(std::move(fileName));
    }
    reading_.isUnderWay = false;
    view_.readingWentOn();
}

Task<void> HistoryReader::readOne(Path fileName) {
    Result<std::unique_ptr<ReadableFile>> file = files_.openForReading(joinPath(logFolder_, fileName));
    if (!file.ok()) {
        reading_.isIncomplete = true;
        co_return;
    }
    lines_.addFile(file.take());
    for (;;) {
        const Result<bool> isMore = lines_.takePiece();
        reading_.lines = lines_.size();
        if (!isMore.ok()) reading_.isIncomplete = true;
        if (!isMore.ok() || !isMore.value()) co_return;
        view_.readingWentOn();
        co_await loop_.breathe();
    }
}

void HistoryReader::clear() {
    reads_.abort();
    copies_.abort();
    waiting_.clear();
    reading_ = {};
    lines_.clear();
}

void HistoryReader::copy(std::vector<LineRange> ranges) {
    copies_.abort();
    std::sort(ranges.begin(), ranges.end(), [](const LineRange& a, const LineRange& b) { return a.first < b.first; });
    copies_.start(gather(std::move(ranges)));
}

Task<void> HistoryReader::gather(std::vector<LineRange> ranges) {
    std::string text;
    std::size_t count = 0;
    for (const LineRange& range : ranges) {
        for (std::size_t next = range.first; next <= range.last;) {
            std::vector<std::string> lines = lines_.linesFrom(next);
            lines.resize(std::min(lines.size(), range.last - next + 1));
            for (const std::string& line : lines) text.append(line).append("\n");
            next += lines.size();
            count += lines.size();
            if (text.size() > kLargestCopy) {
                view_.refuseCopy();
                co_return;
            }
            co_await loop_.breathe();
        }
    }
    if (count == 1) text.pop_back();
    view_.takeCopy(std::move(text));
}

}  // namespace vantrell
