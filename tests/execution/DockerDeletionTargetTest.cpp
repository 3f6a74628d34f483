#include "execution/DockerDeletionTarget.h"

#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using Target = DockerDeletionTarget;

std::optional<Target> parsed(const std::string& key) { return Target::fromKey(EnrichmentKey{key}); }

TEST(DockerDeletionTarget, IsReadFromTheKeysOfImagesVolumesAndPrunes) {
    EXPECT_EQ(parsed("docker:image:sha256:abc"), (Target{Target::Image{"sha256:abc"}}));
    EXPECT_EQ(parsed("docker:volume:data"), (Target{Target::Volume{"data"}}));
    EXPECT_EQ(parsed("docker:prune:images"), (Target{Target::Prune{DockerPruneKind::images}}));
    EXPECT_EQ(parsed("docker:prune:volumes"), (Target{Target::Prune{DockerPruneKind::volumes}}));
    EXPECT_EQ(parsed("docker:prune:buildcache"), (Target{Target::Prune{DockerPruneKind::buildcache}}));
}

TEST(DockerDeletionTarget, IsNothingForEveryOtherKey) {
    for (const char* key : {"docker:image:", "docker:volume:", "docker:prune:", "docker:prune:everything",
                            "docker:prune:images ", "docker:unsupported", "docker:", "docker", "",
                            "Docker:image:a", " docker:image:a", "url:/docker:image:a", "simulator:a"})
        EXPECT_EQ(parsed(key), std::nullopt) << key;
}

TEST(DockerDeletionTarget, GivesTheToolItsArguments) {
    EXPECT_THAT(parsed("docker:image:abc")->arguments(), ElementsAre("rmi", "-f", "abc"));
    EXPECT_THAT(parsed("docker:volume:data")->arguments(), ElementsAre("volume", "rm", "-f", "data"));
    EXPECT_THAT(parsed("docker:prune:images")->arguments(), ElementsAre("image", "prune", "-a", "-f"));
    EXPECT_THAT(parsed("docker:prune:volumes")->arguments(), ElementsAre("volume", "prune", "-f"));
    EXPECT_THAT(parsed("docker:prune:buildcache")->arguments(), ElementsAre("builder", "prune", "-a", "-f"));
}

TEST(DockerDeletionTarget, HandsANameThatLooksLikeAnOptionOverAsOneArgument) {
    EXPECT_THAT(parsed("docker:volume:--force; rm -rf /")->arguments(),
                ElementsAre("volume", "rm", "-f", "--force; rm -rf /"));
}

} // namespace
} // namespace vesko
