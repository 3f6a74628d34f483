#pragma once

#include <functional>

namespace vesko {

// Runs closures one after another, or on threads of its own.
// post() may be called from any thread and never runs the closure before it returns.
// A closure must not throw. Closures posted by one thread to a loop run in the order of posting.
struct Executor {
    virtual ~Executor() = default;
    virtual void post(std::function<void()> closure) = 0;
};

} // namespace vesko
