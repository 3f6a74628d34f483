#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// What a person calls the volume that `path` (absolute, links resolved) lies on: the label of its file
/// system, else the last name of the mount point. The root of the tree without a label has no name.
/// `mountTable` is in the form of /proc/self/mountinfo; `labelFolder` holds a link to the device for each
/// label, as the device manager keeps them in /dev/disk/by-label (udev(7)).
std::optional<std::string> volumeName(std::string_view path, std::string_view mountTable,
                                      const std::string& labelFolder);

} // namespace vesko
