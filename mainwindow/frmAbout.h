// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QString>

#include "core/about_facts.h"

namespace vantrell {

/// What the windows are made with and shown on, for people: "Qt 6.4.2 (xcb)".
[[nodiscard]] QString toolkitText();

/// The About window. Not modal; Escape closes it.
class frmAbout final : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(const AboutFacts& facts, QWidget* parent = nullptr);

    /// Puts the text into the clipboard and says so.
    void copyDiagnostics(const QString& text);

Q_SIGNALS:
    void systemInfoPressed();
    void copyDiagnosticsPressed();

private:
    [[nodiscard]] QLayout* makeHead(const AboutFacts& facts);
    [[nodiscard]] QFormLayout* makeFacts(const AboutFacts& facts);
    [[nodiscard]] QLayout* makeDataFolderRow(const Path& folder);
    [[nodiscard]] QLayout* makeButtons();
    [[nodiscard]] QLabel* makeText(const QString& text, const QString& description);
    void openDataFolder();

    Path dataFolder_;
    QLabel* lblCopied_ = nullptr;
};

}  // namespace vantrell
