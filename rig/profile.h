// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "core/settings_format.h"
#include "rig/sqlite_file.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

/// A profile below `root` as an operator would have set it up: four folders, a password, and settings that show the
/// window and wait for Start. Needs SQLite::SQLite3.
class Profile {
public:
    explicit Profile(std::string root) : root(std::move(root)) {
        for (const std::string& folder : {in, out, done, rejected, data}) std::filesystem::create_directories(folder);
        settings.SourceFolder = in;
        settings.DestinationFolder = out;
        settings.DoneFolder = done;
        settings.RejectFolder = rejected;
        settings.RunNormalAtStartup = true;
        settings.ScanIntervalMs = 65535;
        settings.WeeklyDeleteHour = settings.WeeklyDeleteDaysOld = 7;
        settings.WeeklyDeleteAmPm = "PM";
    }

    /// Writes settings and password file, and makes this the profile of what starts from now on.
    void use() const {
        writeFile(data + "/ZEP.cfg", formatSettings(settings));
        OtherProgram(data + "/EDPasswords.mdb")
            .run(
                "CREATE TABLE EncDecPasswords (Password text, Active boolean);"
                "INSERT INTO EncDecPasswords VALUES ('secret', 1)");
        ::setenv("ALLUSERSPROFILE", root.c_str(), 1);
    }

    /// The settings that ZEP.cfg holds now.
    [[nodiscard]] SettingsRecord saved() const {
        SettingsRecord read;
        (void)parseSettings(readFile(data + "/ZEP.cfg"), read);
        return read;
    }

    /// All that was logged, whatever the day.
    [[nodiscard]] std::string log() const {
        std::string text;
        for (const auto& file : std::filesystem::directory_iterator(data + "/Daily Activity Logs"))
            text += readFile(file.path());
        return text;
    }

    const std::string root;
    const std::string in = root + "/in", out = root + "/out", done = root + "/done", rejected = root + "/rejected";
    const std::string data = root + "/Quillon, Inc/Vantrell/Bin";
    SettingsRecord settings;
};

/// The number of entries of a folder.
inline std::size_t countIn(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// A file that takes no room until something is written into it.
inline void makeSparseFile(const std::string& path, std::uint64_t size) {
    writeFile(path, "");
    std::filesystem::resize_file(path, size);
}

}  // namespace vantrell::test
