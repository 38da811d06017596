// SPDX-License-Identifier: MIT
#include "transport/lookahead.h"

#include <utility>

namespace vantrell {

namespace {

constexpr std::size_t kMostAhead = 16;
// Larger files keep the disk busy by themselves.
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 20U;

}  // namespace

Lookahead::Lookahead(EventLoop& loop, FileEncryption& encryption)
    : loop_(loop), encryption_(encryption), tasks_(loop.queue()) {}

bool Lookahead::hasRoom() const { return slots_.size() < kMostAhead; }

void Lookahead::add(EncryptOrder order, std::size_t index) {
    slots_.push_back(std::make_unique<Slot>());
    Slot& slot = *slots_.back();
    slot.item = {encryption_.begin(std::move(order)), index};
    slot.isReady = FileEncryption::sizeOf(*slot.item.work) > kMostBytes;
    if (!slot.isReady) tasks_.start(prepare(loop_.queue(), encryption_, slot));
}

Task<void> Lookahead::prepare(RunQueue& queue, FileEncryption& encryption, Slot& slot) {
    co_await encryption.prepare(*slot.item.work);
    slot.isReady = true;
    queue.wake(slot.waiter);
}

Task<Lookahead::Item> Lookahead::next() {
    Slot& first = *slots_.front();
    if (!first.isReady) {
        Pending<> prepared(loop_.queue(), [&first](Ticket<> ticket) { first.waiter = ticket; });
        co_await prepared;
    }
    Item item = std::move(first.item);
    slots_.pop_front();
    co_return item;
}

std::optional<Lookahead::Item> Lookahead::readyOne() {
    if (isEmpty() || !slots_.front()->isReady) return std::nullopt;
    Item item = std::move(slots_.front()->item);
    slots_.pop_front();
    return item;
}

}  // namespace vantrell
