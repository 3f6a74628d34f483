#include "concurrency/CurrentTask.h"

#include <utility>

namespace vesko {

namespace {
StopToken& tokenOfThisThread() {
    thread_local StopToken token;
    return token;
}
} // namespace

StopToken currentStopToken() { return tokenOfThisThread(); }

bool currentTaskIsCancelled() { return tokenOfThisThread().stopRequested(); }

CurrentTaskScope::CurrentTaskScope(StopToken token)
    : outer_(std::exchange(tokenOfThisThread(), std::move(token))) {}

CurrentTaskScope::~CurrentTaskScope() { tokenOfThisThread() = std::move(outer_); }

} // namespace vesko
