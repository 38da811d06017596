// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/cipher.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// Encrypts one file into another one. One instance serves one file: settings first, then `equalsStanding` where a file
/// of the name stands already, then `prepareFile` unless that one is taken, then `publishFile`.
///
/// The only combination there is: algorithm "aes", mode "ecb", 256 bits. The key is the text's ASCII bytes, cut at 32
/// or filled up with zero bytes to 32. What cannot be set is reported by `prepareFile`. The text of the key is never
/// kept; the key made of it is wiped as soon as the file is prepared, and in any case with the component.
class CryptoComponent {
public:
    /// Bytes of the source done, and bytes there are.
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// Loop and toolbox outlive the component, and the component its tasks.
    CryptoComponent(EventLoop& loop, FileToolbox& toolbox, CipherFactory makeCipher);

    void setAlgorithm(std::string_view name);
    void setCipherMode(std::string_view name);
    void setKeyLength(int bits);
    void setSecretKey(std::string_view text, std::string_view encoding);
    /// ECB uses none; accepted and checked like the key.
    void setInitialisationVector(std::string_view text, std::string_view encoding);
    void setProgress(Progress progress);

    /// Whether the file that stands under the path is what encrypting the source would give, byte for byte. Equal
    /// passwords and contents give equal bytes, so that it is the output of an earlier try. When it is and `believed`,
    /// it is taken: `publishFile` brings it to stable storage. `source` outlives the task, and is read from its
    /// beginning again afterwards. A fault says why it cannot be told: the source's own, or the
    /// machine's.
    Task<Result<bool>> equalsStanding(HeldFile& source, Path file, bool believed);
    /// Reads the source to its end, encrypts it into a file without a name in the folder, and brings that to stable
    /// storage. Fault `inUse` when the source turns out shorter or longer than it was when it was opened. Memory does
    /// not grow with the file. `source` outlives the task.
    Task<Result<>> prepareFile(HeldFile& source, Path folder);
    /// Looks at the source once more and gives the prepared file its name, which lies in the folder that it was
    /// prepared in. It appears under that name only when it is whole and on stable storage. `source` outlives the task.
    Task<Result<>> publishFile(HeldFile& source, std::string name, Replace replace);

    /// The same for a name that is free (`nameTaken` otherwise), and without waiting: it appears whole on stable
    /// storage with the next `flushNames` of the toolbox. After a fault nothing has happened.
    Result<> nameFile(HeldFile& source, std::string name);

private:
    void refuse(const std::string& why);
    bool acceptsText(std::string_view text, std::string_view encoding, const std::string& what);
    [[nodiscard]] Result<> checkSettings() const;
    Task<Result<>> prepare(HeldFile& source, Path folder);

    EventLoop& loop_;
    FileToolbox& toolbox_;
    CipherFactory makeCipher_;
    bool algorithmIsSet_ = false;
    bool modeIsSet_ = false;
    bool lengthIsSet_ = false;
    bool keyIsSet_ = false;
    std::string refusal_;  // the first setting that could not be accepted
    CipherKey key_;
    Progress progress_;
    std::unique_ptr<OutputFile> prepared_;
    std::unique_ptr<StandingFile> standing_;  ///< the file that is taken for the output
};

using CryptoFactory = std::function<std::unique_ptr<CryptoComponent>()>;

}  // namespace vantrell
