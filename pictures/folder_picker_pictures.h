// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>
#include <filesystem>
#include <functional>

#include "folderpicker/frmButton.h"
#include "platform/file_toolbox.h"

namespace vantrell::test {

/// Folders to choose from. Neither their place nor their dates change from picture to picture.
class ExampleFolders {
public:
    ExampleFolders() {
        if (!std::filesystem::create_directory(path_)) qFatal("%s is in the way", path_.c_str());
        const std::chrono::sys_seconds date = std::chrono::sys_days(std::chrono::year(2026) / 11 / 20);
        for (const char* name : {"done", "in", "out", "rejected"}) {
            std::filesystem::create_directory(path_ / name);
            std::filesystem::last_write_time(path_ / name, std::chrono::file_clock::from_sys(date));
        }
    }
    ExampleFolders(const ExampleFolders&) = delete;
    ExampleFolders& operator=(const ExampleFolders&) = delete;
    ~ExampleFolders() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_ = std::filesystem::temp_directory_path() / "office";
};

/// Draws the chooser as "folder-picker", with a name being typed as "folder-picker-create", and the box that refuses a
/// name as "folder-picker-refusal".
inline void drawFolderPicker(FileToolbox& toolbox, const Path& folder,
                             const std::function<void(QWidget&, const QString&)>& save,
                             const std::function<void(int)>& wait) {
    frmButton picker({QStringLiteral("Choose the Source folder"),
                      QStringLiteral("Select Current Folder or Create New Folder"), folder, true, false},
                     toolbox, nullptr);
    picker.setAttribute(Qt::WA_DeleteOnClose, false);
    picker.show();
    wait(500);
    save(picker, QStringLiteral("folder-picker"));
    picker.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    auto* name = picker.findChild<QLineEdit*>(QStringLiteral("txtName"));
    name->setText(QStringLiteral("incoming invoices"));
    save(picker, QStringLiteral("folder-picker-create"));
    name->setText(QStringLiteral("in"));
    picker.findChild<QPushButton*>(QStringLiteral("cmdNameOk"))->click();
    save(*picker.findChild<QMessageBox*>(), QStringLiteral("folder-picker-refusal"));
}

}  // namespace vantrell::test
