#pragma once

// The whole layer at once, for files that write flows.
#include "concurrency/AsyncStream.h"
#include "concurrency/CurrentTask.h"
#include "concurrency/Offload.h"
#include "concurrency/Sleep.h"
#include "concurrency/Spawn.h"
#include "concurrency/TaskGroup.h"
#include "concurrency/TaskRegistry.h"
#include "concurrency/WorkerPool.h"
