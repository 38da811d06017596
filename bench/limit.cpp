// SPDX-License-Identifier: MIT
//
// The least that any program must do that keeps the same promises: the same cipher, the same flushes in the same order,
// and nothing else. No look at who writes, no names, no log, no window. It stops at the first error.
//
//   bench_limit SOURCE DESTINATION DONE FILES IN A GROUP        1: one by one
//
// A group's outputs are written, flushed, named, and their folder is flushed; then its originals are moved. The moves
// are flushed after so many files, and at the end.

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20U;
constexpr std::size_t kMostUnflushed = std::size_t{32} << 20U;
constexpr std::size_t kMovesOfOneFlush = 256;
constexpr std::array<unsigned char, 32> kKey{'s', 'e', 'c', 'r', 'e', 't'};

void must(bool isDone, const char* what) {
    if (isDone) return;
    std::perror(what);
    std::exit(1);
}

int openFolder(const char* path) {
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    must(folder >= 0, path);
    return folder;
}

struct Output {
    std::string name;
    int file = -1;
};

class Carrier {
public:
    Carrier(const char* source, const char* destination, const char* done)
        : source_(openFolder(source)),
          destination_(openFolder(destination)),
          done_(openFolder(done)),
          destinationPath_(destination) {}

    void add(const std::string& name) { group_.push_back({name, encrypted(name)}); }
    [[nodiscard]] std::size_t waiting() const { return group_.size(); }

    void carryGroup() {
        for (const Output& output : group_) ::sync_file_range(output.file, 0, 0, SYNC_FILE_RANGE_WRITE);
        for (const Output& output : group_) must(::fdatasync(output.file) == 0, "fdatasync");
        for (const Output& output : group_) {
            const std::string held = "/proc/self/fd/" + std::to_string(output.file);
            const std::string name = output.name + ".enc";
            must(::linkat(AT_FDCWD, held.c_str(), destination_, name.c_str(), AT_SYMLINK_FOLLOW) == 0, name.c_str());
            ::close(output.file);
        }
        must(::fsync(destination_) == 0, "fsync of the destination");
        for (const Output& output : group_)
            must(::renameat2(source_, output.name.c_str(), done_, output.name.c_str(), RENAME_NOREPLACE) == 0,
                 output.name.c_str());
        moved_ += group_.size();
        group_.clear();
        if (moved_ >= kMovesOfOneFlush) flushMoves();
    }

    void flushMoves() {
        must(::fsync(done_) == 0, "fsync of the done folder");
        must(::fsync(source_) == 0, "fsync of the source");
        moved_ = 0;
    }

private:
    void write(int file, std::size_t bytes) {
        must(::write(file, out_.data(), bytes) == static_cast<ssize_t>(bytes), "write");
        unflushed_ += bytes;
        if (unflushed_ < kMostUnflushed) return;
        ::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
        unflushed_ = 0;
    }

    int encrypted(const std::string& name) {
        const int from = ::openat(source_, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
        const int to = ::open(destinationPath_, O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
        must(from >= 0 && to >= 0, name.c_str());
        EVP_EncryptInit_ex(cipher_, EVP_aes_256_ecb(), nullptr, kKey.data(), nullptr);
        int made = 0;
        for (ssize_t read = 0; (read = ::read(from, in_.data(), in_.size())) != 0;) {
            must(read > 0, "read");
            EVP_EncryptUpdate(cipher_, out_.data(), &made, in_.data(), static_cast<int>(read));
            write(to, static_cast<std::size_t>(made));
        }
        EVP_EncryptFinal_ex(cipher_, out_.data(), &made);
        write(to, static_cast<std::size_t>(made));
        ::close(from);
        return to;
    }

    int source_, destination_, done_;
    const char* destinationPath_;
    std::vector<Output> group_;
    std::size_t moved_ = 0;
    std::size_t unflushed_ = 0;
    EVP_CIPHER_CTX* cipher_ = EVP_CIPHER_CTX_new();
    std::vector<unsigned char> in_ = std::vector<unsigned char>(kBuffer);
    std::vector<unsigned char> out_ = std::vector<unsigned char>(kBuffer + 16);
};

}  // namespace

int main(int count, char** words) {
    if (count != 5) {
        std::fprintf(stderr, "usage: bench_limit SOURCE DESTINATION DONE FILES_IN_A_GROUP\n");
        return 2;
    }
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(words[1]))
        if (entry.is_regular_file()) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    Carrier carrier(words[1], words[2], words[3]);
    const std::size_t group = std::strtoull(words[4], nullptr, 10);
    for (const std::string& name : names) {
        carrier.add(name);
        if (carrier.waiting() >= group) carrier.carryGroup();
    }
    carrier.carryGroup();
    carrier.flushMoves();
    return 0;
}
