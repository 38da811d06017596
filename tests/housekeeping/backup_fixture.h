// SPDX-License-Identifier: MIT
#pragma once

#include "core/settings_format.h"
#include "passwords/password_fixture.h"
#include "support/pass_bench.h"

namespace vantrell::test {

/// Live files and both backups in a data folder: "live" is the Source folder and the active password of the live ones,
/// "hand" and "close" those of the two backups.
class BackupFixture : public testing::Test {
protected:
    BackupFixture() {
        for (const auto& [folder, word] : {std::pair{app, "live"}, {hand, "hand"}, {unload, "close"}}) {
            std::filesystem::create_directories(folder);
            writeFile(folder + "/ZEP.cfg", settingsOf(word));
            makePasswords(folder + "/EDPasswords.mdb", word);
        }
    }

    std::string settingsOf(const std::string& word) const {
        SettingsRecord record = atFirst;
        record.SourceFolder = "/" + word;
        return formatSettings(record);
    }
    static void makePasswords(const std::string& file, const std::string& active) {
        writeFile(file, std::string(suppliedPasswordFile()));
        // So often that it stands on several pages: half of a copy would show.
        OtherProgram(file).run(
            "INSERT INTO EncDecPasswords VALUES ('other', 0); WITH RECURSIVE n(i) AS (SELECT 1 UNION"
            " ALL SELECT i + 1 FROM n WHERE i < 400) INSERT INTO EncDecPasswords SELECT '" +
            active + "', 1 FROM n");
    }
    static Strings activeIn(const std::string& file) {
        OtherProgram reader(file);
        EXPECT_EQ(reader.column("PRAGMA integrity_check"), Strings{"ok"});
        return reader.column("SELECT DISTINCT Password FROM EncDecPasswords WHERE Active");
    }
    /// All boxes that the operation shows, answered with OK.
    Strings textsOf(Task<void> operation) {
        bench.boxes.answerNext(Answer::ok);
        bench.boxes.answerNext(Answer::ok);
        EXPECT_TRUE(bench.loop.run(std::move(operation)));
        return takeTexts();
    }
    Strings takeTexts() {
        Strings texts;
        for (const auto* shown : {&bench.boxes.asked, &bench.boxes.informed}) {
            for (const Box& box : *shown) {
                EXPECT_TRUE(box.title == "Vantrell" && box.buttons == Buttons::ok);
                texts.push_back(box.text);
            }
        }
        bench.boxes.asked.clear();
        bench.boxes.informed.clear();
        return texts;
    }

    PassBench bench;
    const SettingsRecord atFirst = bench.state.settings;
    const std::string app = bench.state.AppFolder;
    const std::string hand = app + "/Config Backup";
    const std::string unload = app + "/Last Config Backup";
    const std::string cfg = "/ZEP.cfg";
    const std::string mdb = "/EDPasswords.mdb";
    PasswordStore& store = bench.engine.passwords;
    ConfigBackup& backup = bench.engine.backup;
};

}  // namespace vantrell::test
