// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "base/fault.h"

namespace vantrell {

/// The outcome of something that can fail: a value, or the fault that kept it from coming about. There is no
/// conversion to bool, so that neither success nor failure is ever taken for the other.
///
///     Result<Size> size = sizeOf(path);
///     if (!size.ok()) return size.fault();
///     use(size.value());
template <class T = void>
class [[nodiscard]] Result {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): `return value;` and `return fault;` are the point of it.
    Result(Fault fault) : content_(std::in_place_index<1>, std::move(fault)) {}
    /// A value, or what a T can be made of (a pointer to a derived class). Never another result: it hides no copying.
    template <std::convertible_to<T> Value = T>
    requires(!std::same_as<std::remove_cvref_t<Value>, Result> && !std::same_as<std::remove_cvref_t<Value>, Fault>)
        // NOLINTNEXTLINE(google-explicit-constructor, bugprone-forwarding-reference-overload)
        Result(Value&& value)
        : content_(std::in_place_index<0>, std::forward<Value>(value)) {}

    [[nodiscard]] bool ok() const { return content_.index() == 0; }
    /// Only when `ok()`.
    [[nodiscard]] T& value() { return std::get<0>(content_); }
    [[nodiscard]] const T& value() const { return std::get<0>(content_); }
    /// The value, moved out; only when `ok()`, and once.
    [[nodiscard]] T take() { return std::move(std::get<0>(content_)); }
    /// Only when not `ok()`.
    [[nodiscard]] const Fault& fault() const { return std::get<1>(content_); }
    /// Whether it failed in just this way.
    [[nodiscard]] bool failedWith(FaultKind kind) const { return !ok() && fault().kind == kind; }

private:
    std::variant<T, Fault> content_;
};

/// The outcome of something that has no value: it succeeded, or the fault says why not.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    // NOLINTNEXTLINE(google-explicit-constructor)
    Result(Fault fault) : fault_(std::move(fault)) {}

    [[nodiscard]] bool ok() const { return !fault_.has_value(); }
    /// Only when not `ok()`.
    [[nodiscard]] const Fault& fault() const { return *fault_; }
    /// Whether it failed in just this way.
    [[nodiscard]] bool failedWith(FaultKind kind) const { return fault_ && fault_->kind == kind; }

private:
    std::optional<Fault> fault_;
};

}  // namespace vantrell
