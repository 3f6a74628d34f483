#include "execution/Remover.h"

#include "platform/OddTree.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::Eq;
using ::testing::Field;
using ::testing::Optional;

TEST(Remover, TakesAFolderAwayWithEverythingInIt) {
    const OddTree tree;
    tree.file("victim/a/b/c", 10'000);
    tree.file("victim/.hidden");
    tree.folder("victim/empty");
    tree.text("canary", "alive");
    EXPECT_THAT(removeForGood(tree.url("victim")), Eq(std::nullopt));
    EXPECT_FALSE(tree.has("victim"));
    EXPECT_EQ(tree.read("canary"), "alive");
}

TEST(Remover, TakesASingleFileAway) {
    const OddTree tree;
    tree.file("victim");
    tree.text("canary", "alive");
    EXPECT_THAT(removeForGood(tree.url("victim")), Eq(std::nullopt));
    EXPECT_FALSE(tree.has("victim"));
    EXPECT_EQ(tree.read("canary"), "alive");
}

TEST(Remover, SaysThatAMissingItemIsNotThere) {
    const OddTree tree;
    EXPECT_THAT(removeForGood(tree.url("missing")),
                Optional(Field(&RemovalFailure::kind, RemovalFailureKind::notFound)));
}

} // namespace
} // namespace vesko
