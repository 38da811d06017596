// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/crypto_component.h"
#include "platform/event_loop.h"
#include "platform/password_key.h"

namespace vantrell {

/// The crypto component over OpenSSL 3. The text of the key is never kept; the key made of it is wiped as soon as it
/// has been handed to the cipher, and in any case with the component.
class OpensslComponent final : public CryptoComponent {
public:
    /// Both must outlive the component, and the component its tasks.
    OpensslComponent(EventLoop& loop, FileToolbox& toolbox);
    ~OpensslComponent() override;

    void setAlgorithm(std::string_view name) override;
    void setCipherMode(std::string_view name) override;
    void setKeyLength(int bits) override;
    void setSecretKey(std::string_view text, std::string_view encoding) override;
    void setInitialisationVector(std::string_view text, std::string_view encoding) override;
    void setProgress(Progress progress) override;

    Task<Result<>> prepareFile(HeldFile& source, Path folder) override;
    Task<Result<>> publishFile(HeldFile& source, Path target, Replace replace) override;

private:
    void refuse(const std::string& why);
    bool acceptsText(std::string_view text, std::string_view encoding, const std::string& what);
    [[nodiscard]] Result<> checkSettings() const;
    void wipeKey();
    Task<Result<>> prepare(HeldFile& source, Path folder);

    EventLoop& loop_;
    FileToolbox& toolbox_;
    bool algorithmIsSet_ = false;
    bool modeIsSet_ = false;
    bool lengthIsSet_ = false;
    bool keyIsSet_ = false;
    std::string refusal_;  // the first setting that could not be accepted
    CipherKey key_{};
    Progress progress_;
    std::unique_ptr<OutputFile> prepared_;
};

}  // namespace vantrell
