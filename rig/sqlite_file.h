// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace vantrell::test {

/// Another program that has the database file open. Needs SQLite::SQLite3.
class OtherProgram {
public:
    explicit OtherProgram(const std::string& file) {
        if (sqlite3_open(file.c_str(), &handle_) != SQLITE_OK) throw std::runtime_error("cannot open " + file);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    ~OtherProgram() { sqlite3_close_v2(handle_); }

    void run(const std::string& sql) {
        if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sql + ": " + sqlite3_errmsg(handle_));
        }
    }
    /// The first column of each row; Null is "NULL".
    std::vector<std::string> column(const std::string& sql) {
        std::vector<std::string> values;
        const auto add = [](void* list, int, char** row, char**) {
            static_cast<std::vector<std::string>*>(list)->emplace_back(row[0] == nullptr ? "NULL" : row[0]);
            return 0;
        };
        sqlite3_exec(handle_, sql.c_str(), add, &values, nullptr);
        return values;
    }

private:
    sqlite3* handle_ = nullptr;
};

}  // namespace vantrell::test
