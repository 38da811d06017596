// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>
#include <cstdint>
#include <string>

#include "widgets/elided_label.h"
#include "widgets/throttle.h"

namespace vantrell {

/// Shows the file and the pass at work. Every setter is cheap: it only stores the value, and the controls are brought
/// up to date at most every 50 ms.
class frmProgress final : public QWidget {
    Q_OBJECT

public:
    explicit frmProgress(QWidget* parent = nullptr);

    void setCurrentFile(const std::string& name);
    void setLastFile(const std::string& name) { lblLastfileProcessed_->showBytes(name); }
    void setTotalFiles(std::uint64_t count);
    void setProcessedCount(std::int32_t count);
    void setPassProgress(std::uint64_t done, std::uint64_t total);
    void setFileProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal);
    /// Says that the pass ends after the file at work.
    void setStopping(bool stopping);
    void clear();

private:
    struct Part {
        bool known = false;
        std::uint64_t done = 0;
        std::uint64_t total = 0;
    };

    void arrange();
    void showAll();
    void showFile();
    void showPass();

    ElidedLabel* lblCurrentProcessingFile_;
    ElidedLabel* lblLastfileProcessed_;
    QLabel* lblTotFileTobe_;
    QLabel* lblCurNumFilesProcessed_;
    QLabel* lblStopping_;
    QProgressBar* fileBar_;
    QProgressBar* passBar_;

    Part file_;
    Part pass_;
    std::uint64_t totalFiles_ = 0;
    std::int32_t processed_ = 0;
    QElapsedTimer sinceFileBegan_;
    QElapsedTimer sincePassBegan_;
    Throttle show_;
};

/// "3 s left", "5 min left", "2 h 10 min left"; empty while too little is known to say it.
[[nodiscard]] QString timeLeftText(std::uint64_t done, std::uint64_t total, std::int64_t elapsedMilliseconds);

}  // namespace vantrell
