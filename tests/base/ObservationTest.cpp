#include "base/Observation.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace vesko {
namespace {

TEST(Observation, EveryListenerIsToldInTheOrderOfSubscribing) {
    ChangeSource source;
    std::string told;
    const auto first = source.subscribe([&] { told += "1"; });
    const auto second = source.subscribe([&] { told += "2"; });
    source.notify();
    source.notify();
    EXPECT_EQ(told, "1212");
}

TEST(Observation, AnEndedSubscriptionIsToldNothing) {
    ChangeSource source;
    int told = 0;
    {
        const auto subscription = source.subscribe([&] { ++told; });
        source.notify();
    }
    source.notify();
    EXPECT_EQ(told, 1);
}

TEST(Observation, ASubscriptionThatMovesKeepsTelling) {
    ChangeSource source;
    int told = 0;
    auto first = source.subscribe([&] { ++told; });
    ChangeSource::Subscription second = std::move(first);
    source.notify();
    EXPECT_EQ(told, 1);
    ChangeSource::Subscription third;
    third = std::move(second);
    source.notify();
    EXPECT_EQ(told, 2);
}

TEST(Observation, ASubscriptionMayOutliveItsSource) {
    int told = 0;
    ChangeSource::Subscription subscription;
    {
        ChangeSource source;
        subscription = source.subscribe([&] { ++told; });
        source.notify();
    }
    subscription = {};
    EXPECT_EQ(told, 1);
}

TEST(Observation, AListenerMayEndItselfAndOthersWhileBeingTold) {
    ChangeSource source;
    std::string told;
    std::optional<ChangeSource::Subscription> first;
    std::optional<ChangeSource::Subscription> second;
    first = source.subscribe([&] {
        told += "1";
        first.reset();
        second.reset();
    });
    second = source.subscribe([&] { told += "2"; });
    const auto third = source.subscribe([&] { told += "3"; });
    source.notify();
    EXPECT_EQ(told, "13");
    source.notify();
    EXPECT_EQ(told, "133");
}

TEST(Observation, AListenerMaySubscribeWhileBeingTold) {
    ChangeSource source;
    int told = 0;
    std::optional<ChangeSource::Subscription> later;
    const auto first = source.subscribe([&] {
        if (!later) later = source.subscribe([&] { ++told; });
    });
    source.notify();
    EXPECT_EQ(told, 1) << "the new one is told of the change that is under way";
    source.notify();
    EXPECT_EQ(told, 2);
}

TEST(Observation, AListenerMayChangeTheOwnerAgain) {
    ChangeSource source;
    Observed<int> value(source, 0);
    int told = 0;
    const auto subscription = source.subscribe([&] {
        ++told;
        if (*value < 3) value = *value + 1;
    });
    value = 1;
    EXPECT_EQ(*value, 3);
    EXPECT_EQ(told, 3);
}

TEST(Observation, AListenerMayTakeTheSourceAway) {
    auto source = std::make_unique<ChangeSource>();
    std::string told;
    const auto first = source->subscribe([&] {
        told += "1";
        source.reset();
    });
    const auto second = source->subscribe([&] { told += "2"; });
    source->notify();
    EXPECT_EQ(told, "12");
}

TEST(Observation, AssigningAnEqualValueTellsNobody) {
    ChangeSource source;
    Observed<std::string> name(source, "a");
    int told = 0;
    const auto subscription = source.subscribe([&] { ++told; });
    name = std::string("a");
    EXPECT_EQ(told, 0);
    name = std::string("b");
    EXPECT_EQ(told, 1);
    EXPECT_EQ(*name, "b");
    EXPECT_EQ(name->size(), 1U);
}

TEST(Observation, ChangingInPlaceTellsOnceWhateverHappened) {
    ChangeSource source;
    Observed<std::string> name(source, "a");
    int told = 0;
    const auto subscription = source.subscribe([&] { ++told; });
    name.modify([](std::string& text) { text += "bc"; });
    name.modify([](std::string&) {});
    EXPECT_EQ(*name, "abc");
    EXPECT_EQ(told, 2);
}

TEST(Observation, AValueThatCannotBeComparedAlwaysTells) {
    struct Opaque {
        int number = 0;
    };
    ChangeSource source;
    Observed<Opaque> value(source);
    int told = 0;
    const auto subscription = source.subscribe([&] { ++told; });
    value = Opaque{0};
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace vesko
