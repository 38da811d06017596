// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "platform/openssl/openssl_cipher.h"
#include "support/documented_blocks.h"
#include "support/hex.h"
#include "support/toolbox_fixture.h"
#include "transport/crypto_component.h"

namespace vantrell::test {
namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kPiece = 256 * 1024;

class Crypto : public WithToolbox {
protected:
    std::unique_ptr<CryptoComponent> componentFor(const std::string& password) {
        auto component = std::make_unique<CryptoComponent>(loop, toolbox, makeOpensslCipher);
        component->setAlgorithm("aes");
        component->setCipherMode("ecb");
        component->setKeyLength(256);
        component->setSecretKey(password, "ascii");
        component->setInitialisationVector(password, "ascii");
        return component;
    }
    std::unique_ptr<HeldFile> fileOf(const std::string& plain) {
        writeFile(folder / "a", plain);
        return toolbox.hold(folder / "a").take();
    }
    Result<> encrypt(CryptoComponent& component, HeldFile& source, Replace replace = Replace::never) {
        const Result<> prepared = loop.valueOf(component.prepareFile(source, folder.path()));
        return prepared.ok() ? loop.valueOf(component.publishFile(source, "a.enc", replace)) : prepared;
    }
    std::string encrypted(const std::string& password, const std::string& plain) {
        const auto component = componentFor(password);
        EXPECT_EQ(wordsOf(encrypt(*component, *fileOf(plain), Replace::allowed)), "");
        return readFile(folder / "a.enc");
    }
    std::string expectFailure(CryptoComponent& component, HeldFile& source, FaultKind kind) {
        const Names before = namesIn(folder.path());
        const Result<> encrypted = encrypt(component, source);
        EXPECT_EQ(faultOf(encrypted), kind) << wordsOf(encrypted);
        EXPECT_FALSE(wordsOf(encrypted).empty());
        EXPECT_EQ(namesIn(folder.path()), before);
        return wordsOf(encrypted);
    }
};

// FIPS 197, appendix C.3; NIST SP 800-38A, F.1.5: key, plaintext, ciphertext.
const char* const kKnownAnswers[][3] = {
    {"000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f", "00112233445566778899aabbccddeeff",
     "8ea2b7ca516745bfeafc49904b496089"},
    {"603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4",
     "6bc1bee22e409f96e93d7e117393172a ae2d8a571e03ac9c9eb76fac45af8e51"
     "30c81c46a35ce411e5fbc1191a0a52ef f69f2445df4f9b17ad2b417be66c3710",
     "f3eed1bdb5d2a03c064b5a7e3db181f8 591ccb10d410ed26dc5ba74a31362870"
     "b6ed21b99ca6f4f9f153e7b1beafed1d 23304b7a39f9f3ff067d8d8f9e24ecc7"},
};

TEST_F(Crypto, PublishedVectorsComeOutOfTheCipher) {
    for (const auto& [keyText, plain, cipherText] : kKnownAnswers) {
        CipherKey key;
        std::ranges::copy(fromHex(keyText), key.begin());
        const std::string bytes = fromHex(plain);
        std::string encrypted(bytes.size() + kBlock, '\0');
        const auto made =
            makeOpensslCipher(key)->add(std::as_bytes(std::span(bytes)), std::as_writable_bytes(std::span(encrypted)));
        ASSERT_EQ(wordsOf(made), "");
        EXPECT_EQ(toHex(encrypted.substr(0, made.value())), toHex(fromHex(cipherText)));
    }
}

TEST_F(Crypto, TheOpensslProgramAgreesBothWays) {
    std::mt19937 random(20);
    const auto below = [&random](std::size_t end) { return std::size_t{random()} % end; };
    std::string script = "cd '" + folder.path() + "'\n";
    for (std::size_t i = 0; i < 300; ++i) {
        constexpr std::size_t kEdges[] = {0, 1, 15, 16, 17, 31, 32, kPiece - 1, kPiece, 3 * kPiece + 5};
        std::string plain(i < std::size(kEdges) ? kEdges[i] : below(70001), '\0');
        std::ranges::generate(plain, [&] { return static_cast<char>(random()); });
        std::string password(1 + below(40), '\0');
        std::ranges::generate(password, [&] { return static_cast<char>(32 + below(95)); });
        const std::string name = std::to_string(i);
        writeFile(folder / name, plain);
        writeFile(folder / (name + ".enc"), encrypted(password, plain));
        std::string key = toHex(password.substr(0, 32));
        key.resize(64, '0');
        const std::string run = "openssl enc -aes-256-ecb -K " + key;
        script += run + " -in " + name + " | cmp - " + name + ".enc || exit 1\n";
        script += run + " -d -in " + name + ".enc | cmp - " + name + " || exit 1\n";
    }
    writeFile(folder / "script", script);
    EXPECT_EQ(std::system(("sh '" + (folder / "script") + "'").c_str()), 0);
}

TEST_F(Crypto, WhatCannotBeSetIsRefused) {
    using Change = void (*)(CryptoComponent&);
    const Change changes[] = {
        [](CryptoComponent& c) { c.setAlgorithm("des"); },
        [](CryptoComponent& c) { c.setCipherMode("cbc"); },
        [](CryptoComponent& c) { c.setKeyLength(128); },
        [](CryptoComponent& c) { c.setSecretKey("", "ascii"); },
        [](CryptoComponent& c) { c.setSecretKey("secret", "utf-8"); },
        [](CryptoComponent& c) { c.setSecretKey("s\xC3\xA9same", "ascii"); },
        [](CryptoComponent& c) { c.setInitialisationVector("s\xC3\xA9same", "ascii"); },
    };
    const auto source = fileOf("text");
    for (const Change change : changes) {
        const auto component = componentFor("secret");
        change(*component);
        EXPECT_EQ(expectFailure(*component, *source, FaultKind::other).find("same"), std::string::npos)
            << "no word of the password may be told";
    }
    CryptoComponent untouched(loop, toolbox, makeOpensslCipher);
    expectFailure(untouched, *source, FaultKind::other);
    const auto used = componentFor("secret");
    EXPECT_EQ(faultOf(encrypt(*used, *source)), kSuccess);
    expectFailure(*used, *fileOf("another"), FaultKind::other);
}

TEST_F(Crypto, AFileThatChangesMeanwhileIsInUse) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{15}, kPiece, kPiece + 44})
        for (const std::size_t now : {size + 1, size + 300 * 1024, size / 2}) {
            if (now == size) continue;
            const auto source = fileOf(std::string(size, 'x'));
            writeFile(folder / "a", std::string(now, 'x'));
            expectFailure(*componentFor("secret"), *source, FaultKind::inUse);
        }
}

}  // namespace
}  // namespace vantrell::test
