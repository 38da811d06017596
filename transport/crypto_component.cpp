// SPDX-License-Identifier: MIT
#include "transport/crypto_component.h"

#include <algorithm>
#include <utility>

#include "transport/cipher_stream.h"
#include "transport/comparing_output.h"

namespace vantrell {

namespace {

// The last block is always padded, by a whole one where nothing is missing.
std::uint64_t encryptedSize(std::uint64_t plain) { return (plain / Cipher::kBlockBytes + 1) * Cipher::kBlockBytes; }

}  // namespace

CryptoComponent::CryptoComponent(EventLoop& loop, FileToolbox& toolbox, CipherFactory makeCipher)
    : loop_(loop), toolbox_(toolbox), makeCipher_(std::move(makeCipher)) {}

void CryptoComponent::refuse(const std::string& why) {
    if (refusal_.empty()) refusal_ = why;
}

void CryptoComponent::setAlgorithm(std::string_view name) {
    algorithmIsSet_ = name == "aes";
    if (!algorithmIsSet_) refuse("unknown algorithm \"" + std::string(name) + "\"");
}

void CryptoComponent::setCipherMode(std::string_view name) {
    modeIsSet_ = name == "ecb";
    if (!modeIsSet_) refuse("unknown cipher mode \"" + std::string(name) + "\"");
}

void CryptoComponent::setKeyLength(int bits) {
    lengthIsSet_ = bits == 256;
    if (!lengthIsSet_) refuse("a key of " + std::to_string(bits) + " bits is not supported");
}

bool CryptoComponent::acceptsText(std::string_view text, std::string_view encoding, const std::string& what) {
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (encoding != "ascii") {
        refuse("unknown encoding \"" + std::string(encoding) + "\" of the " + what);
    } else if (text.empty()) {
        refuse("the " + what + " is empty");
    } else if (!std::all_of(text.begin(), text.end(), isAscii)) {
        refuse("the " + what + " has characters outside ASCII");
    } else {
        return true;
    }
    return false;
}

void CryptoComponent::setSecretKey(std::string_view text, std::string_view encoding) {
    keyIsSet_ = acceptsText(text, encoding, "secret key");
    if (keyIsSet_)
        key_ = keyFromPassword(text);
    else
        key_.wipe();
}

void CryptoComponent::setInitialisationVector(std::string_view text, std::string_view encoding) {
    acceptsText(text, encoding, "initialisation vector");
}

void CryptoComponent::setProgress(Progress progress) { progress_ = std::move(progress); }

Result<> CryptoComponent::checkSettings() const {
    if (!refusal_.empty()) return Fault{FaultKind::other, refusal_};
    if (!algorithmIsSet_) return Fault{FaultKind::other, "no algorithm is set"};
    if (!modeIsSet_) return Fault{FaultKind::other, "no cipher mode is set"};
    if (!lengthIsSet_) return Fault{FaultKind::other, "no key length is set"};
    if (!keyIsSet_) return Fault{FaultKind::other, "no secret key is set"};
    return {};
}

Task<Result<bool>> CryptoComponent::equalsStanding(HeldFile& source, Path file, bool believed) {
    if (!checkSettings().ok()) co_return false;
    Result<std::unique_ptr<StandingFile>> opened = toolbox_.openStanding(file);
    if (!opened.ok() && opened.fault().isTheMachines()) co_return opened.fault();
    if (!opened.ok() || opened.value()->size() != encryptedSize(source.size())) co_return false;
    const std::unique_ptr<Cipher> cipher = makeCipher_(key_);
    ComparingOutput compared(opened.take());
    CipherStream stream(loop_, *cipher, source, compared);
    const Result<> equal = co_await stream.run(progress_);
    source.rewind();
    if (compared.differs()) co_return false;
    if (compared.cannotBeRead()) co_return Fault{FaultKind::machine, equal.fault().text};
    if (!equal.ok()) co_return equal.fault();
    if (believed) standing_ = compared.takeStanding();
    co_return true;
}

Task<Result<>> CryptoComponent::prepareFile(HeldFile& source, Path folder) {
    Result<> prepared = checkSettings();
    if (prepared.ok()) prepared = co_await prepare(source, std::move(folder));
    key_.wipe();
    keyIsSet_ = false;
    co_return prepared;
}

Task<Result<>> CryptoComponent::prepare(HeldFile& source, Path folder) {
    const std::unique_ptr<Cipher> cipher = makeCipher_(key_);
    Result<std::unique_ptr<OutputFile>> created = toolbox_.createOutput(folder);
    if (!created.ok()) co_return created.fault();
    std::unique_ptr<OutputFile> output = created.take();
    CipherStream stream(loop_, *cipher, source, *output);
    Result<> written = co_await stream.run(progress_);
    if (written.ok()) written = co_await output->flush();
    if (written.ok())
        prepared_ = std::move(output);
    else
        co_await output->discard();
    co_return written;
}

Result<> CryptoComponent::nameFile(HeldFile& source, std::string name) {
    if (!prepared_) return Fault{FaultKind::other, "no file is prepared"};
    if (Result<> unchanged = source.verify(); !unchanged.ok()) return unchanged;
    return prepared_->nameIfFree(std::move(name));
}

Task<Result<>> CryptoComponent::publishFile(HeldFile& source, std::string name, Replace replace) {
    if (!prepared_ && !standing_) co_return Fault{FaultKind::other, "no file is prepared"};
    Result<> published = source.verify();
    if (standing_ && published.ok()) published = co_await standing_->confirm();
    if (prepared_ && published.ok()) published = co_await prepared_->publish(std::move(name), replace);
    if (prepared_ && !published.ok()) co_await prepared_->discard();
    prepared_.reset();
    standing_.reset();
    co_return published;
}

}  // namespace vantrell
