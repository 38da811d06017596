// SPDX-License-Identifier: MIT
#include <openssl/evp.h>

#include <algorithm>

#include "platform/files/temporary_name.h"
#include "simulation/checked_names.h"
#include "simulation/checker.h"

namespace vantrell::test {

namespace {

// With OpenSSL alone, so that nothing of the program is taken for granted. Nothing when it is no ciphertext.
std::optional<std::string> decrypted(EVP_CIPHER_CTX* context, const std::string& password, const std::string& made) {
    std::array<unsigned char, 32> key{};
    std::copy_n(password.begin(), std::min(password.size(), key.size()), key.begin());
    std::string plain(made.size() + 16, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(plain.data());
    int first = 0;
    int last = 0;
    EVP_DecryptInit_ex(context, EVP_aes_256_ecb(), nullptr, key.data(), nullptr);
    EVP_DecryptUpdate(context, out, &first, reinterpret_cast<const unsigned char*>(made.data()),
                      static_cast<int>(made.size()));
    if (EVP_DecryptFinal_ex(context, out + first, &last) != 1) return std::nullopt;
    plain.resize(static_cast<std::size_t>(first + last));
    return plain;
}

}  // namespace

// What is known of what lies on the disks

Checker::Checker(World& world) : world_(world), context_(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free) {
    settings_.insert(world.firstSettings);
    settingsAre(world.settings);
    passwordFiles_.emplace_back("passwords 1", Excuse::none);
    outside_ = world.filesBelow(world.folder(Where::outside)).size();
}

// What is known of bytes. They are kept, so that whoever writes to the file gets others.
const Checker::Known& Checker::identify(const Bytes& bytes, bool maybeOutput) {
    const auto idOf = [this](const std::string& plain) {
        for (std::size_t i = contents_.size(); i-- > 0;)
            if (*contents_[i].bytes == plain) return static_cast<Id>(i);
        return kUnknown;
    };
    Known& known = known_[bytes.get()];
    if (!known.bytes) {
        known.bytes = bytes;
        known.content = idOf(*bytes);
    }
    if (!maybeOutput || known.content != kUnknown || !known.password.empty()) return known;
    for (const std::string& password : passwords_) {
        const std::optional<std::string> plain = decrypted(context_.get(), password, *bytes);
        known.original = plain ? idOf(*plain) : kUnknown;
        known.password = password;
        if (known.original != kUnknown) break;
    }
    return known;
}

bool Checker::isRegion(const std::string& path) const {
    return std::any_of(world_.regions().begin(), world_.regions().end(),
                       [&](const Region& region) { return region.path == path; });
}

// Our temporary files are nobody's content; what lies in a private folder of a file that is being removed is.
void Checker::collect(const SimulatedDisk& disk, Node folder, const std::string& path, Where where, State& into) {
    for (const auto& [name, node] : disk.at(folder).names) {
        const Inode& inode = disk.at(node);
        std::string below = path + "/" + name;
        if (S_ISREG(inode.mode) && !isTemporaryName(name))
            into.push_back({where, std::move(below), inode.bytes, &identify(inode.bytes, where == Where::destination)});
        else if (S_ISDIR(inode.mode) && !isRegion(below))
            collect(disk, node, below, where, into);
    }
}

Checker::State Checker::stateOf(const Copies& disks) {
    State state;
    state.reserve(before_.size() + 8);
    for (const Region& region : world_.regions())
        if (region.where != Where::data) collect(disks[region.disk], region.node, region.path, region.where, state);
    return state;
}

Checker::Copies Checker::cutCopy(Chance& chance) const {
    Copies copy = world_.disks;
    for (SimulatedDisk& disk : copy) disk.cut(chance);
    return copy;
}

std::string Checker::keyOf(const std::string& name) const {
    for (const Region& region : world_.regions())
        if (region.where == Where::destination && world_.disks[region.disk].traits.foldsCase) return lowered(name);
    return name;
}

void Checker::excuse(Excuse& of, Excuse why) {
    of = why;
    ++excused_[static_cast<std::size_t>(why)];
}

std::vector<Checker::Found> Checker::find(const State& state) const {
    std::vector<Found> found(contents_.size());
    for (const File& file : state) {
        if (file.content() == kUnknown) continue;
        Found& one = found[static_cast<std::size_t>(file.content())];
        one.places |= static_cast<std::uint8_t>(1U << static_cast<unsigned>(file.where));
        one.isInPlace |= file.path == at(file.content()).path;
    }
    return found;
}

}  // namespace vantrell::test
