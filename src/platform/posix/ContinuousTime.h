#pragma once

#include "concurrency/Clock.h"

namespace vesko {

// The time since the machine started, the time asleep included. From any thread.
Instant continuousNow();

} // namespace vesko
