#include "probes/DockerProbes.h"

#include "core/CatalogRows.h"
#include "support/Fixtures.h"
#include "support/FoundItems.h"
#include "support/LanguageScope.h"
#include "support/ToolProbeTest.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using testing::fixture;
using ::testing::IsEmpty;
using testing::itemsOf;
using testing::ScriptedSizes;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;
using Command = testing::FakeRunner::Command;

const std::string usual = "/usr/local/bin/docker";
const std::string other = "/opt/homebrew/bin/docker";
const std::string dataFolder = "Library/Containers/com.docker.docker/Data";
const std::string volumesFolder = dataFolder + "/vms/0/data/docker/volumes";

Command listImages(const std::string& docker) {
    return {docker, "image", "ls", "--format", "{{.ID}}  {{.Repository}}:{{.Tag}}  {{.Size}}"};
}
Command listVolumes(const std::string& docker) { return {docker, "volume", "ls", "-q"}; }
Command inspect(const std::string& docker, const std::string& name) {
    return {docker, "volume", "inspect", name, "--format", "{{.Mountpoint}}"};
}
Command formattedUse(const std::string& docker) {
    return {docker, "system", "df", "--format", "{{.Type}}\t{{.Size}}"};
}
Command plainUse(const std::string& docker) { return {docker, "system", "df"}; }

class DockerProbesTest : public testing::ToolProbeTest {
protected:
    ProbeResult images() { return run(DockerImagesProbe(rowMetadata("docker.images"))); }
    ProbeResult volumes() { return run(DockerVolumesProbe(rowMetadata("docker.volumes"))); }
    ProbeResult buildCache() { return run(DockerBuildCacheProbe(rowMetadata("docker.buildcache"))); }
    void running(const std::string& docker = usual) {
        script.on({docker, "info"}, fixture("docker/info.txt"));
    }

    ScannableItem image(const std::string& id, const std::string& reference, std::int64_t size) const {
        ScannableItem made;
        made.url = tree.url(dataFolder + "/images/" + id);
        made.size = size;
        made.enrichmentKey = {"docker:image:" + id};
        made.displayLabel = reference;
        return made;
    }
    static ScannableItem volume(const std::string& name, const FileURL& folder, std::int64_t size) {
        ScannableItem made = testing::item(folder.path(), size);
        made.enrichmentKey = {"docker:volume:" + name};
        made.displayLabel = name;
        return made;
    }
    ScannableItem unsupported(const std::string& relative, std::int64_t size) const {
        ScannableItem made = testing::item(tree.path(relative), size);
        made.enrichmentKey = {"docker:unsupported"};
        return made;
    }
};

// The look-up of the tool.

TEST_F(DockerProbesTest, TheUsualDockerIsAskedFirstAndAlone) {
    running(usual);
    running(other);
    script.on(listImages(usual), "");
    images();
    EXPECT_THAT(runner->commands(), ElementsAre(Command{usual, "info"}, listImages(usual)));
}

TEST_F(DockerProbesTest, TheOtherDockerIsUsedForEverythingWhereItAloneAnswers) {
    script.failing({usual, "info"}, 1, fixture("docker/info-without-daemon.txt"));
    running(other);
    script.on(listImages(other), fixture("docker/image-ls.txt"));
    script.on(listVolumes(other), "one\n").on(inspect(other, "one"), tree.path("mount"));
    script.on(formattedUse(other), "").on(plainUse(other), "");
    EXPECT_TRUE(images().group);
    EXPECT_THAT(runner->commands(),
                ElementsAre(Command{usual, "info"}, Command{other, "info"}, listImages(other)));
    EXPECT_TRUE(volumes().group);
    EXPECT_THAT(runner->commands(), ElementsAre(Command{usual, "info"}, Command{other, "info"},
                                                listVolumes(other), inspect(other, "one")));
    buildCache();
    EXPECT_THAT(runner->commands(), ElementsAre(Command{usual, "info"}, Command{other, "info"},
                                                formattedUse(other), plainUse(other)));
}

TEST_F(DockerProbesTest, AToolWithoutItsDaemonCountsAsNone) {
    script.failing({usual, "info"}, 1, fixture("docker/info-without-daemon.txt"));
    script.on(listImages(usual), fixture("docker/image-ls.txt"));
    EXPECT_EQ(images(), ProbeResult());
    EXPECT_THAT(runner->commands(), ElementsAre(Command{usual, "info"}, Command{other, "info"}));
}

TEST_F(DockerProbesTest, AProviderDecidesWhichDockerIsUsed) {
    running();
    script.on(listImages("/own/docker"), "a  b:c  1kB\n");
    const auto own = [](const CommandRunning&) { return std::optional<std::string>("/own/docker"); };
    const GroupMetadata metadata = rowMetadata("docker.images");
    EXPECT_EQ(itemsOf(run(DockerImagesProbe(metadata, own))), (ItemList{image("a", "b:c", 1000)}));
    EXPECT_THAT(runner->commands(), ElementsAre(listImages("/own/docker")));
    run(DockerVolumesProbe(metadata, own));
    EXPECT_THAT(runner->commands(), ElementsAre(listVolumes("/own/docker")));
    run(DockerBuildCacheProbe(metadata, own));
    EXPECT_THAT(runner->commands(), ElementsAre(formattedUse("/own/docker"), plainUse("/own/docker")));
}

TEST_F(DockerProbesTest, AProviderWithoutAnAnswerMeansThatThereIsNone) {
    running();
    tree.folder(dataFolder);
    const auto none = [](const CommandRunning&) { return std::optional<std::string>(); };
    const GroupMetadata metadata = rowMetadata("docker.images");
    EXPECT_EQ(itemsOf(run(DockerImagesProbe(metadata, none))), (ItemList{unsupported(dataFolder, 1000)}));
    EXPECT_EQ(run(DockerVolumesProbe(metadata, none)), ProbeResult());
    EXPECT_EQ(run(DockerBuildCacheProbe(metadata, none)), ProbeResult());
    EXPECT_THAT(runner->commands(), IsEmpty());
}

// Images.

TEST_F(DockerProbesTest, EveryListedImageIsAnItem) {
    running();
    script.on(listImages(usual), "aaa  postgres:16  431MB\nbbb  node:20  1.1GB\n");
    const ProbeResult result = images();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "docker.images");
    EXPECT_EQ(itemsOf(result),
              (ItemList{image("bbb", "node:20", 1'100'000'000), image("aaa", "postgres:16", 431'000'000)}));
    EXPECT_EQ(itemsOf(result).front().name(), "bbb");
    EXPECT_FALSE(itemsOf(result).front().isDirectory);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(sizes->calls(), IsEmpty()) << "the tool tells the size";
}

TEST_F(DockerProbesTest, AnUntaggedImageIsAnItemLikeAnyOther) {
    running();
    script.on(listImages(usual), "aaa  <none>:<none>  212MB\n");
    EXPECT_EQ(itemsOf(images()), (ItemList{image("aaa", "<none>:<none>", 212'000'000)}));
}

TEST_F(DockerProbesTest, AnImageWhoseSizeCannotBeReadIsSkippedWithoutATrace) {
    running();
    script.on(listImages(usual), "aaa  a:1  1.5PB\nbbb  b:1  2GB\nccc  c:1  12\nddd  d:1\n");
    const ProbeResult result = images();
    EXPECT_EQ(itemsOf(result), (ItemList{image("bbb", "b:1", 2'000'000'000)}));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(DockerProbesTest, AnImageWithTwoTagsIsTwoItemsWithOneKeyAndOneUrl) {
    running();
    script.on(listImages(usual), "aaa  node:20  1GB\naaa  node:latest  1GB\n");
    const ProbeResult result = images();
    EXPECT_EQ(itemsOf(result),
              (ItemList{image("aaa", "node:20", 1'000'000'000), image("aaa", "node:latest", 1'000'000'000)}));
}

TEST_F(DockerProbesTest, ImagesThatWeighNothingDoNotShow) {
    running();
    script.on(listImages(usual), "aaa  a:1  0B\nbbb  b:1  -3GB\n");
    EXPECT_EQ(images(), ProbeResult());
}

TEST_F(DockerProbesTest, AnEmptyListOfImagesStaysEmpty) {
    tree.folder(dataFolder);
    running();
    for (const char* printed : {"", "\n \n", "garbage"}) {
        script.on(listImages(usual), printed);
        EXPECT_EQ(images(), ProbeResult());
        EXPECT_THAT(sizes->calls(), IsEmpty()) << "the data folder is not measured";
    }
}

TEST_F(DockerProbesTest, WithoutDockerTheDataFolderIsMeasuredAndCannotBeDeleted) {
    tree.folder(dataFolder);
    const ProbeResult result = images();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(itemsOf(result), (ItemList{unsupported(dataFolder, 1000)}));
    EXPECT_EQ(itemsOf(result).front().name(), "Data");
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{tree.path(dataFolder), true, false}));
}

TEST_F(DockerProbesTest, ImagesThatCannotBeListedLeaveTheDataFolder) {
    tree.folder(dataFolder);
    running();
    script.failing(listImages(usual), 125, "aaa  a:1  1GB\n");
    EXPECT_EQ(itemsOf(images()), (ItemList{unsupported(dataFolder, 1000)}));
}

TEST_F(DockerProbesTest, ADataFolderThatIsMissingOrWeighsNothingIsNoGroup) {
    EXPECT_EQ(images(), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty());
    tree.folder(dataFolder);
    sizes = std::make_shared<ScriptedSizes>([](const FileURL&) { return 0; });
    EXPECT_EQ(images(), ProbeResult());
    EXPECT_THAT(sizes->calls(), SizeIs(1));
}

// Volumes.

TEST_F(DockerProbesTest, EveryVolumeIsMeasuredWhereItIsMounted) {
    running();
    script.on(listVolumes(usual), "one\n\n  two \n");
    script.on(inspect(usual, "one"), tree.path("mounts/one") + "\n");
    script.on(inspect(usual, "two"), "\n " + tree.path("mounts/two") + "/ \n");
    sizes = std::make_shared<ScriptedSizes>(
        [](const FileURL& url) { return url.lastPathComponent() == "two" ? 2000 : 1000; });
    const ProbeResult result = volumes();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "docker.volumes");
    EXPECT_EQ(itemsOf(result), (ItemList{volume("two", tree.url("mounts/two"), 2000),
                                         volume("one", tree.url("mounts/one"), 1000)}));
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(sizes->calls(),
                UnorderedElementsAre(ScriptedSizes::Call{tree.path("mounts/one"), true, false},
                                     ScriptedSizes::Call{tree.path("mounts/two"), true, false}));
}

TEST_F(DockerProbesTest, AVolumeThatCannotBeInspectedIsSkipped) {
    running();
    script.on(listVolumes(usual), "gone\nnowhere\ngood\n");
    script.failing(inspect(usual, "gone"), 1, tree.path("mounts/gone"));
    script.on(inspect(usual, "nowhere"), " \n");
    script.on(inspect(usual, "good"), tree.path("mounts/good"));
    EXPECT_EQ(itemsOf(volumes()), (ItemList{volume("good", tree.url("mounts/good"), 1000)}));
}

TEST_F(DockerProbesTest, AVolumeThatLooksLikeAnOptionOrShellTextIsOneArgument) {
    running();
    script.on(listVolumes(usual), fixture("docker/written-by-hand/volume-ls-odd.txt"));
    for (const char* name : {"--help", "$(touch x); rm", "two words"})
        script.on(inspect(usual, name), tree.path("mounts/" + std::string(name)));
    EXPECT_THAT(itemsOf(volumes()),
                UnorderedElementsAre(volume("--help", tree.url("mounts/--help"), 1000),
                                     volume("$(touch x); rm", tree.url("mounts/$(touch x); rm"), 1000),
                                     volume("two words", tree.url("mounts/two words"), 1000)));
    EXPECT_THAT(runner->commands(), Contains(inspect(usual, "$(touch x); rm")));
}

TEST_F(DockerProbesTest, VolumesWithoutAFolderOnThisMachineGiveWayToWhatCanBeMeasured) {
    running();
    script.on(listVolumes(usual), fixture("docker/volume-ls.txt"));
    script.on(inspect(usual, "atlas_postgres-data"), fixture("docker/volume-inspect.txt"));
    tree.folder(volumesFolder + "/atlas");
    sizes = std::make_shared<ScriptedSizes>(
        [](const FileURL& url) { return url.path().starts_with("/var/lib/docker") ? 0 : 700; });
    EXPECT_EQ(itemsOf(volumes()), (ItemList{unsupported(volumesFolder + "/atlas", 700)}));
    EXPECT_THAT(sizes->calls(), SizeIs(2)) << "the mount point was tried";
}

TEST_F(DockerProbesTest, WithoutDockerEveryVisibleFolderAmongTheVolumesIsMeasured) {
    tree.folder(volumesFolder + "/one");
    tree.folder(volumesFolder + "/two");
    tree.folder(volumesFolder + "/.hidden");
    tree.file(volumesFolder + "/metadata.db");
    tree.link(volumesFolder + "/link", "one");
    const ProbeResult result = volumes();
    ASSERT_TRUE(result.group);
    EXPECT_THAT(itemsOf(result), UnorderedElementsAre(unsupported(volumesFolder + "/one", 1000),
                                                      unsupported(volumesFolder + "/two", 1000)));
    EXPECT_THAT(result.errors, IsEmpty());
    for (const auto& call : sizes->calls()) EXPECT_TRUE(call.preferDiskUsage && !call.linkAware);
}

TEST_F(DockerProbesTest, VolumesThatCannotBeListedLeaveTheFolder) {
    tree.folder(volumesFolder + "/one");
    running();
    script.failing(listVolumes(usual), 1, "two\n").on(inspect(usual, "two"), tree.path("mounts/two"));
    EXPECT_EQ(itemsOf(volumes()), (ItemList{unsupported(volumesFolder + "/one", 1000)}));
}

TEST_F(DockerProbesTest, NoVolumesAtAllLeaveTheFolder) {
    tree.folder(volumesFolder + "/one");
    running();
    script.on(listVolumes(usual), "");
    EXPECT_EQ(itemsOf(volumes()), (ItemList{unsupported(volumesFolder + "/one", 1000)}));
}

TEST_F(DockerProbesTest, AFolderOfVolumesThatIsMissingOrNoFolderIsNoGroup) {
    EXPECT_EQ(volumes(), ProbeResult());
    tree.file(volumesFolder);
    EXPECT_EQ(volumes(), ProbeResult());
}

// The build cache.

TEST_F(DockerProbesTest, TheBuildCacheIsOneItem) {
    const testing::LanguageScope english(Language::english);
    running();
    script.on(formattedUse(usual), fixture("docker/system-df.txt"));
    const ProbeResult result = buildCache();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "docker.buildcache");
    ScannableItem expected = testing::item(tree.path(dataFolder + "/buildcache"), 1'500'000'000);
    expected.enrichmentKey = {"docker:prune:buildcache"};
    expected.displayLabel = "Docker build cache";
    EXPECT_EQ(itemsOf(result), ItemList{expected});
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(runner->commands(), ElementsAre(Command{usual, "info"}, formattedUse(usual)));
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(DockerProbesTest, ABuildCacheOfNothingDoesNotShow) {
    running();
    script.on(formattedUse(usual), fixture("docker/system-df-empty.txt")).on(plainUse(usual), "");
    EXPECT_EQ(buildCache(), ProbeResult());
    EXPECT_THAT(runner->commands(), SizeIs(2)) << "a size of 0 is a size, so the table is not asked for";
}

TEST_F(DockerProbesTest, TheTableIsAskedForWhereTheTemplateFails) {
    running();
    script.failing(formattedUse(usual), 1, fixture("docker/system-df.txt"));
    script.on(plainUse(usual), "Build Cache 5 2kB\n");
    EXPECT_EQ(itemsOf(buildCache()).front().size, 2000);
    script.on(formattedUse(usual), "Images\t2GB\n");
    EXPECT_EQ(itemsOf(buildCache()).front().size, 2000);
}

TEST_F(DockerProbesTest, TheTableOfARealClientGivesNoBuildCache) {
    running();
    script.failing(formattedUse(usual));
    script.on(plainUse(usual), fixture("docker/system-df-table.txt"));
    EXPECT_EQ(buildCache(), ProbeResult());
    script.failing(plainUse(usual), 1, "Build Cache 5 2kB\n");
    EXPECT_EQ(buildCache(), ProbeResult());
}

TEST_F(DockerProbesTest, WithoutDockerThereIsNoBuildCache) {
    tree.folder(dataFolder + "/buildcache");
    EXPECT_EQ(buildCache(), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(DockerProbesTest, GarbageIsNeverAnError) {
    running();
    for (const std::string& garbage : {std::string("\xff\xfe"), std::string("a\0b", 3),
                                       std::string("{\"a\":["), std::string(5000, '\t')}) {
        script.on(listImages(usual), garbage);
        script.on(listVolumes(usual), garbage);
        script.on(formattedUse(usual), garbage).on(plainUse(usual), garbage);
        EXPECT_EQ(images(), ProbeResult());
        EXPECT_EQ(volumes(), ProbeResult());
        EXPECT_EQ(buildCache(), ProbeResult());
    }
}

} // namespace
} // namespace vesko
