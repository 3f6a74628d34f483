#pragma once
#include <cstdint>
#include <string>

namespace vesko::bench {

/// The least that adding up a tree can cost with this system's calls: `threads` loops of getdents64 and statx
/// over a shared stack of paths, with nothing of what a program needs beside: no hard links, no mounts, no
/// depth, no failures. Gives the allocated bytes, each name counted.
std::int64_t walkFloor(const std::string& root, unsigned threads);

} // namespace vesko::bench
