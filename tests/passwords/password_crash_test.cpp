// SPDX-License-Identifier: MIT
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

/// Kills this process right before one of SQLite's changes to the disk. For a child process only: it stays in place.
class DeathAtChange {
public:
    static void install(int change) {
        left = change;
        original = sqlite3_vfs_find(nullptr);
        wrapped = *original;
        wrapped.zName = "deadly";
        wrapped.xOpen = [](sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file, int flags, int* out) {
            const int code = original->xOpen(vfs, name, file, flags, out);
            if (code != SQLITE_OK) return code;
            // The database and its journal have methods of different kinds.
            (flags & SQLITE_OPEN_MAIN_DB) != 0 ? Methods<0>::replace(file) : Methods<1>::replace(file);
            return code;
        };
        wrapped.xDelete = [](sqlite3_vfs* vfs, const char* name, int flush) {
            count();
            return original->xDelete(vfs, name, flush);
        };
        sqlite3_vfs_register(&wrapped, 1);
    }

private:
    template <int>
    struct Methods {
        static void replace(sqlite3_file* file) {
            methods = file->pMethods;
            deadly = *methods;
            deadly.xWrite = [](sqlite3_file* f, const void* bytes, int n, sqlite3_int64 at) {
                count();
                return methods->xWrite(f, bytes, n, at);
            };
            deadly.xTruncate = [](sqlite3_file* f, sqlite3_int64 size) {
                count();
                return methods->xTruncate(f, size);
            };
            deadly.xSync = [](sqlite3_file* f, int how) {
                count();
                return methods->xSync(f, how);
            };
            file->pMethods = &deadly;
        }
        static inline const sqlite3_io_methods* methods = nullptr;
        static inline sqlite3_io_methods deadly{};
    };

    static void count() {
        if (--left == 0) ::raise(SIGKILL);
    }
    static inline int left = 0;
    static inline sqlite3_vfs* original = nullptr;
    static inline sqlite3_vfs wrapped{};
};

/// "old" is active, and a child process makes "new" the active one, again and again on the same file as it was at
/// first, killed at a later change each time. The answer is what was active after each death, and the number of deaths.
class CrashTest : public PasswordFixture {
protected:
    template <class Change>
    std::set<Strings> activeAfterDeaths(Change change, int& deaths) {
        fill("INSERT INTO EncDecPasswords VALUES ('old', 1), ('other', 0), ('new', 0)");
        const std::string before = readFile(file);
        std::set<Strings> seen;
        for (deaths = 0;; ++deaths) {
            writeFile(file, before);
            const bool died = diesAtChange(deaths + 1, change);
            OtherProgram survivor(file);
            EXPECT_EQ(survivor.column("PRAGMA integrity_check"), Strings{"ok"});
            seen.insert(survivor.column("SELECT Password FROM EncDecPasswords WHERE Active"));
            if (!died) return seen;
        }
    }

private:
    template <class Change>
    bool diesAtChange(int number, Change change) {
        const pid_t child = ::fork();
        if (child == 0) {
            DeathAtChange::install(number);
            try {
                change();
                ::_exit(0);
            } catch (...) {
                ::_exit(1);
            }
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        return WIFSIGNALED(status);
    }
};

TEST_F(CrashTest, ExactlyOneIsActiveWhereverASaveDies) {
    int deaths = 0;
    const auto seen = activeAfterDeaths([this] { save("new", true); }, deaths);
    EXPECT_GT(deaths, 3);
    EXPECT_EQ(seen, (std::set<Strings>{{"old"}, {"new"}}));
}

TEST_F(CrashTest, NoneIsActiveWhereTwoTransactionsAreCutApart) {
    // Shows that the deaths fall where they could do harm.
    int deaths = 0;
    const auto clearThenSet = [this] {
        fill("UPDATE EncDecPasswords SET Active = 0");
        fill("UPDATE EncDecPasswords SET Active = 1 WHERE Password = 'new'");
    };
    EXPECT_TRUE(activeAfterDeaths(clearThenSet, deaths).contains(Strings{}));
}

}  // namespace
}  // namespace vantrell::test
