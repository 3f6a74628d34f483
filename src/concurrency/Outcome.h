#pragma once

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

namespace vesko {

// How a piece of work ended: with its value, or with the exception that left it.
template <class T> class Outcome {
    using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

public:
    // Runs the work and keeps how it ended.
    template <class F> void capture(F&& work) noexcept {
        try {
            if constexpr (std::is_void_v<T>) {
                work();
                content_.template emplace<valueIndex>();
            } else {
                content_.template emplace<valueIndex>(work());
            }
        } catch (...) {
            fail(std::current_exception());
        }
    }
    template <class... Arguments> void succeed(Arguments&&... arguments) {
        content_.template emplace<valueIndex>(std::forward<Arguments>(arguments)...);
    }
    void fail(std::exception_ptr error) noexcept { content_.template emplace<errorIndex>(std::move(error)); }

    bool failed() const noexcept { return content_.index() == errorIndex; }

    // Moves the value out, or throws the exception again. Asked once, after the work ended.
    T take() {
        rethrow();
        if constexpr (!std::is_void_v<T>) return std::move(std::get<valueIndex>(content_));
    }
    // The same for one of several readers: a value that can be copied stays where it is.
    T share() {
        rethrow();
        if constexpr (std::is_void_v<T>) {
            return;
        } else if constexpr (std::is_copy_constructible_v<T>) {
            return std::as_const(std::get<valueIndex>(content_));
        } else {
            return std::move(std::get<valueIndex>(content_));
        }
    }

private:
    static constexpr std::size_t valueIndex = 1;
    static constexpr std::size_t errorIndex = 2;

    void rethrow() const {
        if (failed()) std::rethrow_exception(std::get<errorIndex>(content_));
    }

    std::variant<std::monostate, Stored, std::exception_ptr> content_;
};

} // namespace vesko
