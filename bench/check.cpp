// SPDX-License-Identifier: MIT
//
// Whether the encrypted files of a folder are whole: each is decrypted and compared with the original of its name.
//
//   bench_check ORIGINALS ENCRYPTED [MOVED]     MOVED: where the originals must lie now, byte for byte

#include <openssl/evp.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::array<unsigned char, 32> kKey{'s', 'e', 'c', 'r', 'e', 't'};
constexpr std::streamsize kPiece = 1 << 20;

// Reads a file and hands its bytes on in pieces.
template <class Take>
bool readInPieces(const fs::path& path, Take take) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> piece(kPiece);
    while (file.read(piece.data(), kPiece), file.gcount() > 0)
        if (!take(reinterpret_cast<const unsigned char*>(piece.data()), static_cast<int>(file.gcount()))) return false;
    return file.eof();
}

// The expected bytes, which come in any pieces.
class Expected {
public:
    explicit Expected(const fs::path& path) : file_(path, std::ios::binary) {}
    bool takes(const unsigned char* bytes, int count) {
        there_.resize(static_cast<std::size_t>(count));
        return count == 0 || (file_.read(there_.data(), count) &&
                              std::equal(there_.begin(), there_.end(), bytes,
                                         [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; }));
    }
    bool isAtEnd() { return file_.is_open() && file_.peek() == std::ifstream::traits_type::eof(); }

private:
    std::ifstream file_;
    std::vector<char> there_;
};

bool isEncrypted(const fs::path& original, const fs::path& encrypted) {
    EVP_CIPHER_CTX* const cipher = EVP_CIPHER_CTX_new();
    EVP_DecryptInit_ex(cipher, EVP_aes_256_ecb(), nullptr, kKey.data(), nullptr);
    Expected expected(original);
    std::vector<unsigned char> plain(kPiece + 32);
    int made = 0;
    bool isEqual = readInPieces(encrypted, [&](const unsigned char* bytes, int count) {
        return EVP_DecryptUpdate(cipher, plain.data(), &made, bytes, count) == 1 && expected.takes(plain.data(), made);
    });
    isEqual = isEqual && EVP_DecryptFinal_ex(cipher, plain.data(), &made) == 1 && expected.takes(plain.data(), made);
    EVP_CIPHER_CTX_free(cipher);
    return isEqual && expected.isAtEnd();
}

bool isCopy(const fs::path& original, const fs::path& copy) {
    Expected expected(original);
    return readInPieces(copy, [&](const unsigned char* bytes, int count) { return expected.takes(bytes, count); }) &&
           expected.isAtEnd();
}

}  // namespace

int main(int count, char** words) {
    if (count < 3) {
        std::fprintf(stderr, "usage: bench_check ORIGINALS ENCRYPTED [MOVED]\n");
        return 2;
    }
    for (const auto& entry : fs::recursive_directory_iterator(words[1])) {
        if (!entry.is_regular_file()) continue;
        const std::string name = entry.path().filename();
        const bool isRight = isEncrypted(entry.path(), fs::path(words[2]) / (name + ".enc")) &&
                             (count < 4 || isCopy(entry.path(), fs::path(words[3]) / name));
        if (isRight) continue;
        std::fprintf(stderr, "%s is not what it should be\n", name.c_str());
        return 1;
    }
    return 0;
}
