// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_file_check.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

// The first bytes of a database file (https://www.sqlite.org/fileformat2.html, section 1.3).
constexpr std::string_view kSqliteMagic("SQLite format 3\0", 16);
// What stands at offset 4 of Access files, up to and from Access 2007.
constexpr std::string_view kJetMagic = "Standard Jet DB";
constexpr std::string_view kAceMagic = "Standard ACE DB";
constexpr std::size_t kAccessMagicOffset = 4;

DatabaseError notADatabase(const Path& file, const std::string& why) {
    return {kUnspecifiedError, "The file " + file + " " + why + " It was left as it is."};
}

}  // namespace

DatabaseError checkFileBeforeOpening(const Path& file) {
    if (file.empty()) return {kUnspecifiedError, "No database file was named."};
    struct stat status {};
    if (::lstat(file.c_str(), &status) != 0) {
        return {kUnspecifiedError, faultFromErrno(errno, "Cannot open the file " + file).text + "."};
    }
    if (S_ISDIR(status.st_mode)) return {kUnspecifiedError, "A folder stands in the place of the file " + file + "."};
    if (!S_ISREG(status.st_mode)) return {kUnspecifiedError, file + " is a link or a device and not a file."};
    return {};
}

DatabaseError openingError(sqlite3* handle, const Path& file) {
    const std::string what = "Cannot open the file " + file;
    const int number = sqlite3_system_errno(handle);
    if (number != 0) return {kUnspecifiedError, faultFromErrno(number, what).text + "."};
    return {kUnspecifiedError, what + ": " + sqlite3_errmsg(handle) + "."};
}

DatabaseError checkFormat(sqlite3* handle, const Path& file) {
    sqlite3_file* open = nullptr;
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&open));
    sqlite3_int64 size = 0;
    std::array<char, 32> first{};
    if (open == nullptr || open->pMethods == nullptr || open->pMethods->xFileSize(open, &size) != SQLITE_OK) {
        return openingError(handle, file);
    }
    // A shorter file is filled up with zeros.
    const int code = open->pMethods->xRead(open, first.data(), static_cast<int>(first.size()), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) return notADatabase(file, "cannot be read.");
    const std::string_view head(first.data(), first.size());
    const std::string_view access = head.substr(kAccessMagicOffset, kJetMagic.size());
    if (size == 0) return notADatabase(file, "is empty.");
    if (access == kJetMagic || access == kAceMagic) {
        return notADatabase(file, "is a Microsoft Access database, which this version cannot read.");
    }
    if (head.substr(0, kSqliteMagic.size()) != kSqliteMagic) return notADatabase(file, "is not a database.");
    return {};
}

}  // namespace vantrell
