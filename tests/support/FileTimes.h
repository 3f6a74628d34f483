#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include <chrono>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>

namespace vesko::testing {

/// Stamps a file or folder; a link itself, not its target.
inline void setFileTimes(const FileURL& url, Date access, Date modification) {
    const auto stamp = [](Date date) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
        timespec made{};
        made.tv_sec = seconds.time_since_epoch().count();
        made.tv_nsec = std::chrono::nanoseconds(date - seconds).count();
        return made;
    };
    const timespec times[2] = {stamp(access), stamp(modification)};
    if (::utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::runtime_error("can't stamp " + url.path());
}

} // namespace vesko::testing
