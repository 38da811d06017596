// Shapes of coroutines that compilers are known to get wrong. Ends with 0 when all of them come out right.
#include <coroutine>
#include <cstdio>
#include <string>
#include <utility>

namespace {

template <class T>
struct Task {
    struct promise_type {
        T value{};
        std::coroutine_handle<> next;
        Task get_return_object() { return Task{std::coroutine_handle<promise_type>::from_promise(*this)}; }
        std::suspend_always initial_suspend() noexcept { return {}; }
        struct Final {
            bool await_ready() noexcept { return false; }
            std::coroutine_handle<> await_suspend(std::coroutine_handle<promise_type> done) noexcept {
                return done.promise().next ? done.promise().next : std::noop_coroutine();
            }
            void await_resume() noexcept {}
        };
        Final final_suspend() noexcept { return {}; }
        void return_value(T given) { value = std::move(given); }
        void unhandled_exception() {}
    };
    explicit Task(std::coroutine_handle<promise_type> frame) : frame_(frame) {}
    Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, {})) {}
    ~Task() {
        if (frame_) frame_.destroy();
    }
    bool await_ready() { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> caller) {
        frame_.promise().next = caller;
        return frame_;
    }
    T await_resume() { return std::move(frame_.promise().value); }
    T run() {
        frame_.resume();
        return std::move(frame_.promise().value);
    }
    std::coroutine_handle<promise_type> frame_;
};

struct Counted {
    static inline int alive = 0;
    std::string text;
    explicit Counted(std::string given) : text(std::move(given)) { ++alive; }
    Counted(const Counted& other) : text(other.text) { ++alive; }
    Counted(Counted&& other) noexcept : text(std::move(other.text)) { ++alive; }
    ~Counted() { --alive; }
};

struct Pair {
    std::string left;
    std::string right;
};

struct Now {
    Pair pair;
    bool await_ready() { return true; }
    void await_suspend(std::coroutine_handle<>) {}
    std::string await_resume() { return pair.left + pair.right; }
};

Task<bool> same(int value) { co_return value == 1; }
Task<std::string> textOf(Counted counted) { co_return counted.text; }
Task<std::string> joined(Pair pair) { co_return pair.left + pair.right; }

Task<int> ifWithoutLocals() {
    if (co_await same(1)) co_return 10;
    co_return 20;
}
Task<int> elseWithoutLocals() {
    if (co_await same(2)) co_return 10;
    co_return 20;
}
Task<int> switchOnAwait() {
    switch (static_cast<int>(co_await same(1))) {
        case 1:
            co_return 1;
        default:
            co_return 2;
    }
}
Task<int> whileOnAwait() {
    int rounds = 1;
    while (co_await same(rounds)) ++rounds;
    co_return rounds;
}
Task<int> forOnAwait() {
    int rounds = 0;
    for (int i = 1; co_await same(i); ++i) ++rounds;
    co_return rounds;
}
Task<int> conditional() { co_return co_await same(1) && !co_await same(0) ? 5 : 6; }
Task<std::string> aggregateAwaited() { co_return co_await Now{{"a", "b"}}; }
Task<std::string> aggregatePassed() { co_return co_await joined({"a long text that is on the heap", "b"}); }
Task<std::string> temporaryPassed() { co_return co_await textOf(Counted("another text that is on the heap")); }

int failures = 0;
template <class T>
void expect(const char* what, const T& is, const T& wanted) {
    if (is == wanted) return;
    std::printf("coroutine check failed: %s\n", what);
    ++failures;
}

}  // namespace

int main() {
    expect("if", ifWithoutLocals().run(), 10);
    expect("else", elseWithoutLocals().run(), 20);
    expect("switch", switchOnAwait().run(), 1);
    expect("while", whileOnAwait().run(), 2);
    expect("for", forOnAwait().run(), 1);
    expect("conditional", conditional().run(), 5);
    expect("aggregate awaited", aggregateAwaited().run(), std::string("ab"));
    expect("aggregate passed", aggregatePassed().run(), std::string("a long text that is on the heapb"));
    expect("temporary passed", temporaryPassed().run(), std::string("another text that is on the heap"));
    expect("temporaries destroyed", Counted::alive, 0);
    return failures;
}
