#include "platform/VolumeFiguresContract.h"

#include "support/MountNamespace.h"
#include <sys/mount.h>

namespace vesko::testing {
namespace {

/// A volume in memory goes by the name of the folder that it is mounted on.
class Mounted {
public:
    std::optional<std::string> onAVolumeOf(const std::string& name,
                                           const std::function<std::string(const FileURL&)>& check) {
        const TempTree tree;
        const FileURL point = tree.folder(name);
        return inMountNamespace([&]() -> std::string {
            if (::mount("none", point.path().c_str(), "tmpfs", 0, "size=65536") != 0) return "no volume";
            return check(point);
        });
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(OfThisSystem, VolumeFiguresContract, Mounted);

} // namespace
} // namespace vesko::testing
