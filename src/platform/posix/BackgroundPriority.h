#pragma once

namespace vesko {

/// Puts the calling thread, and threads that it starts later, behind the one that paints: on Linux by a nice
/// value of its own (setpriority with a thread's id, sched(7)), on macOS by the quality of service "utility".
/// A system that refuses leaves it as it is.
void workInTheBackground() noexcept;

} // namespace vesko
