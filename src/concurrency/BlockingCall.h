#pragma once

#include "concurrency/CurrentTask.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace vesko {

// A closure that blocks takes the stop token of its task, or nothing.
template <class F> constexpr bool takesStopToken = std::is_invocable_v<F&, StopToken>;

template <class F> auto callBlocking(F& call, const StopToken& token) {
    CurrentTaskScope scope(token);
    if constexpr (takesStopToken<F>) {
        return std::invoke(call, token);
    } else {
        return std::invoke(call);
    }
}

template <class F>
using BlockingResult = decltype(callBlocking(std::declval<F&>(), std::declval<StopToken>()));

} // namespace vesko
