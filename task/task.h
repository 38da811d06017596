// SPDX-License-Identifier: MIT
#pragma once

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace vantrell {

template <class T>
class Task;

namespace detail {

// What the promises of all tasks share: the coroutine that waits for this one, and an exception on its way there.
class TaskPromiseBase {
public:
    struct GoBackToCaller {
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) noexcept {
            const auto caller = finished.promise().caller_;
            return caller ? caller : std::noop_coroutine();
        }
        void await_resume() const noexcept {}
    };

    std::suspend_always initial_suspend() noexcept { return {}; }
    GoBackToCaller final_suspend() noexcept { return {}; }
    void unhandled_exception() noexcept { exception_ = std::current_exception(); }
    void setCaller(std::coroutine_handle<> caller) noexcept { caller_ = caller; }
    void rethrow() const {
        if (exception_) std::rethrow_exception(exception_);
    }

private:
    std::coroutine_handle<> caller_;
    std::exception_ptr exception_;
};

template <class T>
class TaskPromise : public TaskPromiseBase {
public:
    Task<T> get_return_object() noexcept;
    template <class Value>
    void return_value(Value&& value) {
        value_.emplace(std::forward<Value>(value));
    }
    T takeResult() {
        rethrow();
        return std::move(*value_);
    }

private:
    std::optional<T> value_;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
public:
    Task<void> get_return_object() noexcept;
    void return_void() noexcept {}
    void takeResult() const { rethrow(); }
};

}  // namespace detail

/// A piece of long work that reads from top to bottom and gives the event loop its turns in between.
///
/// A task does nothing until it is awaited (or handed to a TaskGroup), which is done once: when it has ended, its frame
/// goes with all that it held, whoever still has the Task. Destroying a task that waits for something is the third
/// outcome beside success and failure, the abort: the destructors of its frame and of all frames beneath it run, and
/// nothing of it ever runs again. Parameters of a coroutine are passed by value, or owned by something that outlives
/// the task; a capturing lambda is never a coroutine.
template <class T = void>
class [[nodiscard]] Task {
public:
    using promise_type = detail::TaskPromise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    explicit Task(Handle frame) noexcept : frame_(frame) {}
    Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, {})) {}
    Task& operator=(Task&& other) noexcept {
        std::swap(frame_, other.frame_);
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() {
        if (frame_) frame_.destroy();
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> caller) noexcept {
        frame_.promise().setCaller(caller);
        return frame_;
    }
    // The task has come to its end: with its frame go its parameters, which may hold a file open.
    T await_resume() {
        const Task ended(std::exchange(frame_, {}));
        return ended.frame_.promise().takeResult();
    }

private:
    Handle frame_;
};

namespace detail {

template <class T>
Task<T> TaskPromise<T>::get_return_object() noexcept {
    return Task<T>{std::coroutine_handle<TaskPromise<T>>::from_promise(*this)};
}

inline Task<void> TaskPromise<void>::get_return_object() noexcept {
    return Task<void>{std::coroutine_handle<TaskPromise<void>>::from_promise(*this)};
}

}  // namespace detail
}  // namespace vantrell
