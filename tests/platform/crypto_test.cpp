// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "platform/linux/aes_ecb_encryptor.h"
#include "platform/linux/openssl_component.h"
#include "support/documented_blocks.h"
#include "support/hand_cranked_loop.h"
#include "support/hex.h"
#include "support/memory_files.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

// Whole blocks of padding, as they come out when the plaintext ends with a block.
constexpr std::size_t kBlock = 16;

class Crypto : public testing::Test {
protected:
    std::unique_ptr<OpensslComponent> componentFor(const std::string& password) {
        auto component = std::make_unique<OpensslComponent>(loop, toolbox);
        component->setAlgorithm("aes");
        component->setCipherMode("ecb");
        component->setKeyLength(256);
        component->setSecretKey(password, "ascii");
        component->setInitialisationVector(password, "ascii");
        return component;
    }
    int encrypt(CryptoComponent& component, HeldFile& source, Replace replace = Replace::never) {
        return loop.valueOf(component.encryptFile(source, "/out/a.enc", replace));
    }
    std::string encrypted(const std::string& password, std::string plain) {
        MemoryHeldFile source(std::move(plain));
        const auto component = componentFor(password);
        EXPECT_EQ(encrypt(*component, source, Replace::allowed), CryptoComponent::kSuccess)
            << component->lastError().text;
        return device.files["/out/a.enc"];
    }
    void expectFailure(CryptoComponent& component, HeldFile& source, FaultKind kind) {
        const auto before = device.files;
        EXPECT_EQ(encrypt(component, source), 0);
        EXPECT_EQ(component.lastError().kind, kind) << component.lastError().text;
        EXPECT_FALSE(component.lastError().text.empty());
        EXPECT_EQ(device.files, before);
    }

    HandCrankedLoop loop;
    MemoryDevice device;
    MemoryToolbox toolbox{device};
};

struct KnownAnswer {
    const char* key;
    const char* plain;
    const char* cipher;
};

// FIPS 197, appendix C.3; NIST SP 800-38A, F.1.5.
const KnownAnswer kKnownAnswers[] = {
    {"000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f", "00112233445566778899aabbccddeeff",
     "8ea2b7ca516745bfeafc49904b496089"},
    {"603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4",
     "6bc1bee22e409f96e93d7e117393172a ae2d8a571e03ac9c9eb76fac45af8e51"
     "30c81c46a35ce411e5fbc1191a0a52ef f69f2445df4f9b17ad2b417be66c3710",
     "f3eed1bdb5d2a03c064b5a7e3db181f8 591ccb10d410ed26dc5ba74a31362870"
     "b6ed21b99ca6f4f9f153e7b1beafed1d 23304b7a39f9f3ff067d8d8f9e24ecc7"},
};

TEST_F(Crypto, PublishedVectorsComeOutOfTheFilePath) {
    for (const KnownAnswer& known : kKnownAnswers) {
        CipherKey key{};
        std::ranges::copy(fromHex(known.key), key.begin());
        MemoryHeldFile source(fromHex(known.plain));
        MemoryOutput output(device, "/out");
        AesEcbEncryptor encryptor(key);
        ASSERT_FALSE(loop.valueOf(encryptor.encrypt(loop, source, output, {})));
        ASSERT_FALSE(loop.valueOf(output.flush()));
        ASSERT_FALSE(loop.valueOf(output.publish("/out/v", Replace::allowed)));
        const std::string& cipher = device.files["/out/v"];
        ASSERT_GT(cipher.size(), kBlock);
        EXPECT_EQ(toHex(cipher.substr(0, cipher.size() - kBlock)), toHex(fromHex(known.cipher)));
    }
}

TEST_F(Crypto, TheOpensslProgramAgreesBothWays) {
    const TemporaryFolder folder;
    std::mt19937 random(20);
    const auto below = [&random](std::size_t end) { return std::size_t{random()} % end; };
    std::string script = "cd '" + folder.path() + "'\n";
    for (std::size_t i = 0; i < 300; ++i) {
        constexpr std::size_t kEdges[] = {0, 1, 15, 16, 17, 31, 32, 65535, 65536, 65537};
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

TEST_F(Crypto, LargeAndTricklingFilesAreCarriedInPieces) {
    const std::string piece = encrypted("secret", std::string(256 * 1024, 'x'));
    const std::string whole = encrypted("secret", std::string(3 * 256 * 1024 + 5, 'x'));
    ASSERT_EQ(whole.size(), std::size_t{3 * 256 * 1024 + kBlock});
    EXPECT_EQ(whole.substr(2 * 256 * 1024, 256 * 1024), piece.substr(0, 256 * 1024));

    MemoryHeldFile trickling(std::string(3 * 256 * 1024 + 5, 'x'));
    trickling.mostAtOnce = 4097;
    const auto component = componentFor("secret");
    std::uint64_t last = 0;
    component->setProgress([&last](std::uint64_t done, std::uint64_t total) {
        EXPECT_GT(done, last);
        EXPECT_EQ(total, 3U * 256 * 1024 + 5);
        last = done;
    });
    EXPECT_EQ(encrypt(*component, trickling, Replace::allowed), CryptoComponent::kSuccess);
    EXPECT_EQ(device.files["/out/a.enc"], whole);
    EXPECT_EQ(last, 3U * 256 * 1024 + 5);
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
    for (const Change change : changes) {
        MemoryHeldFile source("text");
        const auto component = componentFor("secret");
        change(*component);
        expectFailure(*component, source, FaultKind::other);
        EXPECT_EQ(component->lastError().text.find("same"), std::string::npos) << "no word of the password may be told";
    }
    MemoryHeldFile source("text");
    OpensslComponent untouched(loop, toolbox);
    expectFailure(untouched, source, FaultKind::other);
}

TEST_F(Crypto, AComponentServesOneFile) {
    MemoryHeldFile first("one");
    MemoryHeldFile second("two");
    const auto component = componentFor("secret");
    EXPECT_EQ(encrypt(*component, first), CryptoComponent::kSuccess);
    device.files.clear();
    expectFailure(*component, second, FaultKind::other);
}

TEST_F(Crypto, AFullDeviceLeavesNothingBehind) {
    device.room = 256 * 1024 + 100;
    MemoryHeldFile source(std::string(600 * 1024, 'x'));
    expectFailure(*componentFor("secret"), source, FaultKind::noSpace);
    EXPECT_EQ(device.discarded, 1);
}

TEST_F(Crypto, AFaultAtAnyStepPublishesNothing) {
    const FileFault fault{FaultKind::deviceFailing, "failing"};
    for (FileFault* place : {&device.flushFault, &device.publishFault, &toolbox.createFault}) {
        *place = fault;
        MemoryHeldFile source("text");
        expectFailure(*componentFor("secret"), source, FaultKind::deviceFailing);
        *place = {};
    }
    MemoryHeldFile unreadable("text");
    unreadable.readFault = fault;
    expectFailure(*componentFor("secret"), unreadable, FaultKind::other);
    EXPECT_EQ(device.discarded, 3) << "no output was made where none could be created";
}

TEST_F(Crypto, AFileThatChangesMeanwhileIsInUse) {
    for (const std::size_t size : {0U, 15U, 256U * 1024, 300U * 1024}) {
        for (const std::size_t now : {size + 1, size + 300 * 1024, size / 2}) {
            if (now == size) continue;
            MemoryHeldFile source(std::string(size, 'x'));
            source.becomes(std::string(now, 'x'));
            expectFailure(*componentFor("secret"), source, FaultKind::inUse);
        }
    }
    MemoryHeldFile source("text");
    source.verifyFault = {FaultKind::inUse, "somebody writes to it"};
    expectFailure(*componentFor("secret"), source, FaultKind::inUse);
}

TEST_F(Crypto, ATakenNameIsReplacedOnlyWhenAllowed) {
    device.files["/out/a.enc"] = "old";
    MemoryHeldFile source("text");
    expectFailure(*componentFor("secret"), source, FaultKind::nameTaken);
    EXPECT_EQ(encrypted("secret", "text").size(), kBlock);
}

class CryptoOnDisk : public WithToolbox {
protected:
    int encrypt(HeldFile& source) {
        OpensslComponent component(loop, toolbox);
        component.setAlgorithm("aes");
        component.setCipherMode("ecb");
        component.setKeyLength(256);
        component.setSecretKey("secret", "ascii");
        return loop.valueOf(component.encryptFile(source, folder / "a.enc", Replace::never));
    }
};

TEST_F(CryptoOnDisk, ARealFileIsWholeWhenItHasItsName) {
    writeFile(folder / "a", std::string(1000000, 'x'));
    const HoldResult held = toolbox.hold(folder / "a");
    ASSERT_TRUE(held.file) << held.fault.text;
    EXPECT_EQ(encrypt(*held.file), CryptoComponent::kSuccess);
    EXPECT_EQ(std::filesystem::file_size(folder / "a.enc"), 1000000 / kBlock * kBlock + kBlock);
    EXPECT_EQ(namesIn(folder.path()), (Names{"a", "a.enc"}));
}

TEST_F(CryptoOnDisk, AFileThatIsWrittenToMeanwhileIsNotPublished) {
    writeFile(folder / "a", "text");
    const HoldResult held = toolbox.hold(folder / "a");
    ASSERT_TRUE(held.file) << held.fault.text;
    std::ofstream(folder / "a", std::ios::app) << "more";
    EXPECT_EQ(encrypt(*held.file), 0);
    EXPECT_EQ(namesIn(folder.path()), Names{"a"});
}

struct Example {
    std::string password;
    std::string plain;
    std::string cipher;  // hexadecimal
};

std::string withLineFeeds(std::string text) {
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos;) text.replace(at, 2, "\n");
    return text;
}

std::vector<Example> documentedExamples() {
    std::vector<Example> examples;
    for (const std::vector<std::string>& block : documentedBlocks("formats.md", "enc-hex")) {
        Example& example = examples.emplace_back();
        for (const std::string& line : block) {
            const auto colon = line.find(':');
            const std::string name = line.substr(0, colon);
            const std::string value = colon + 2 > line.size() ? "" : line.substr(colon + 2);
            if (name == "password") example.password = value;
            if (name == "plaintext") example.plain = withLineFeeds(value);
            if (name == "enc") example.cipher += value;
        }
    }
    return examples;
}

TEST_F(Crypto, TheDocumentedExamplesHold) {
    const std::vector<Example> examples = documentedExamples();
    ASSERT_GE(examples.size(), 6U);
    for (const Example& example : examples)
        EXPECT_EQ(toHex(encrypted(example.password, example.plain)), example.cipher) << example.plain;
}

}  // namespace
}  // namespace vantrell::test
