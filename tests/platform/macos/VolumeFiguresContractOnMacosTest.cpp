#include "platform/VolumeFiguresContract.h"
#include "platform/macos/FakeCoreFoundation.h"
#include <sys/statvfs.h>

namespace vesko::testing {
namespace {

/// The figures of this machine's temporary folder, told by resource key.
class ToldVolume {
public:
    ToldVolume() {
        struct statvfs volume{};
        if (::statvfs(std::filesystem::temp_directory_path().c_str(), &volume) != 0)
            throw std::runtime_error("no temporary folder");
        const auto bytes = [&](auto blocks) { return static_cast<std::int64_t>(blocks * volume.f_frsize); };
        fakeVolume() = {};
        fakeVolume().numbers = {
            {kCFURLVolumeTotalCapacityKey, bytes(volume.f_blocks)},
            {kCFURLVolumeAvailableCapacityKey, bytes(volume.f_bavail)},
            {kCFURLVolumeAvailableCapacityForImportantUsageKey, bytes(volume.f_bfree)},
            {kCFURLVolumeAvailableCapacityForOpportunisticUsageKey, bytes(volume.f_bavail / 2)}};
        fakeVolume().texts = {{kCFURLVolumeLocalizedNameKey, "Macintosh HD"}};
    }
    ToldVolume(const ToldVolume&) = delete;
    ToldVolume& operator=(const ToldVolume&) = delete;
    ~ToldVolume() {
        fakeVolume() = {};
        EXPECT_EQ(liveObjects(), before_) << "a leak";
    }

    std::optional<std::string> onAVolumeOf(const std::string& name,
                                           const std::function<std::string(const FileURL&)>& check) {
        fakeVolume().texts = {{kCFURLVolumeLocalizedNameKey, name}};
        return check(FileURL(std::filesystem::temp_directory_path().string()));
    }

private:
    std::size_t before_ = liveObjects();
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, VolumeFiguresContract, ToldVolume);

} // namespace
} // namespace vesko::testing
