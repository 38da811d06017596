// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_toolbox.h"

namespace vantrell {

/// Encrypts one file into another one. One instance serves one file: settings first, then its two halves one after
/// the other.
///
/// The only combination there is: algorithm "aes", mode "ecb", 256 bits (FIPS 197, NIST SP 800-38A). The key is the
/// text's ASCII bytes, cut at 32 or filled up with zero bytes to 32. The last block is padded as in PKCS #7 (RFC 5652,
/// section 6.3), always. What cannot be set is reported by the first half.
class CryptoComponent {
public:
    /// Bytes of the source done, and bytes there are.
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    CryptoComponent() = default;
    CryptoComponent(const CryptoComponent&) = delete;
    CryptoComponent& operator=(const CryptoComponent&) = delete;
    virtual ~CryptoComponent() = default;

    virtual void setAlgorithm(std::string_view name) = 0;
    virtual void setCipherMode(std::string_view name) = 0;
    virtual void setKeyLength(int bits) = 0;
    virtual void setSecretKey(std::string_view text, std::string_view encoding) = 0;
    /// ECB uses none; accepted and checked like the key.
    virtual void setInitialisationVector(std::string_view text, std::string_view encoding) = 0;
    virtual void setProgress(Progress progress) = 0;

    /// The first half: encrypts into a file without a name in the target's folder, and brings it to stable storage.
    /// `source` must outlive the task.
    virtual Task<Result<>> prepareFile(HeldFile& source, Path folder) = 0;
    /// The second half: looks at the source once more and gives the prepared file its name. The target appears under
    /// its name only when it is whole and on stable storage. `source` must outlive the task.
    virtual Task<Result<>> publishFile(HeldFile& source, Path target, Replace replace) = 0;
};

using CryptoFactory = std::function<std::unique_ptr<CryptoComponent>()>;

}  // namespace vantrell
