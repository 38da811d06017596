// SPDX-License-Identifier: MIT
#include "platform/openssl/openssl_component.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <utility>

#include "platform/openssl/aes_ecb_encryptor.h"

namespace vantrell {

OpensslComponent::OpensslComponent(EventLoop& loop, FileToolbox& toolbox) : loop_(loop), toolbox_(toolbox) {}

OpensslComponent::~OpensslComponent() { wipeKey(); }

void OpensslComponent::wipeKey() {
    OPENSSL_cleanse(key_.data(), key_.size());
    keyIsSet_ = false;
}

void OpensslComponent::refuse(const std::string& why) {
    if (refusal_.empty()) refusal_ = why;
}

void OpensslComponent::setAlgorithm(std::string_view name) {
    algorithmIsSet_ = name == "aes";
    if (!algorithmIsSet_) refuse("unknown algorithm \"" + std::string(name) + "\"");
}

void OpensslComponent::setCipherMode(std::string_view name) {
    modeIsSet_ = name == "ecb";
    if (!modeIsSet_) refuse("unknown cipher mode \"" + std::string(name) + "\"");
}

void OpensslComponent::setKeyLength(int bits) {
    lengthIsSet_ = bits == 256;
    if (!lengthIsSet_) refuse("a key of " + std::to_string(bits) + " bits is not supported");
}

bool OpensslComponent::acceptsText(std::string_view text, std::string_view encoding, const std::string& what) {
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

void OpensslComponent::setSecretKey(std::string_view text, std::string_view encoding) {
    wipeKey();
    if (!acceptsText(text, encoding, "secret key")) return;
    CipherKey key = keyFromPassword(text);
    key_ = key;
    OPENSSL_cleanse(key.data(), key.size());
    keyIsSet_ = true;
}

void OpensslComponent::setInitialisationVector(std::string_view text, std::string_view encoding) {
    acceptsText(text, encoding, "initialisation vector");
}

void OpensslComponent::setProgress(Progress progress) { progress_ = std::move(progress); }

Result<> OpensslComponent::checkSettings() const {
    if (!refusal_.empty()) return Fault{FaultKind::other, refusal_};
    if (!algorithmIsSet_) return Fault{FaultKind::other, "no algorithm is set"};
    if (!modeIsSet_) return Fault{FaultKind::other, "no cipher mode is set"};
    if (!lengthIsSet_) return Fault{FaultKind::other, "no key length is set"};
    if (!keyIsSet_) return Fault{FaultKind::other, "no secret key is set"};
    return {};
}

Task<Result<>> OpensslComponent::prepareFile(HeldFile& source, Path folder) {
    Result<> prepared = checkSettings();
    if (prepared.ok()) prepared = co_await prepare(source, std::move(folder));
    wipeKey();
    co_return prepared;
}

Task<Result<>> OpensslComponent::prepare(HeldFile& source, Path folder) {
    AesEcbEncryptor encryptor(key_);
    wipeKey();
    Result<std::unique_ptr<OutputFile>> created = toolbox_.createOutput(folder);
    if (!created.ok()) co_return created.fault();
    std::unique_ptr<OutputFile> output = created.take();
    Result<> written = co_await encryptor.encrypt(loop_, source, *output, progress_);
    if (written.ok()) written = co_await output->flush();
    if (written.ok())
        prepared_ = std::move(output);
    else
        co_await output->discard();
    co_return written;
}

Task<Result<>> OpensslComponent::publishFile(HeldFile& source, Path target, Replace replace) {
    if (!prepared_) co_return Fault{FaultKind::other, "no file is prepared"};
    Result<> published = source.verify();
    if (published.ok()) published = co_await prepared_->publish(std::move(target), replace);
    if (!published.ok()) co_await prepared_->discard();
    prepared_.reset();
    co_return published;
}

}  // namespace vantrell
