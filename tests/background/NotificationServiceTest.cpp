#include "background/NotificationService.h"

#include "concurrency/Concurrency.h"
#include "support/LanguageScope.h"
#include "support/ManualLoop.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <regex>
#include <set>
#include <vector>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = NotificationAlertKind;

/// Says what it is told to, and writes down what it is asked.
class ScriptedCenter final : public NotificationCenter {
public:
    int status = authorized;
    Answer answer{.granted = true};
    bool takes = true;
    std::vector<int> questions;
    std::vector<NotificationRequest> shown;
    int asked = 0;

    Task<int> authorizationStatus() override {
        ++asked;
        co_return status;
    }
    Task<Answer> requestAuthorization(int options) override {
        questions.push_back(options);
        co_return answer;
    }
    Task<bool> add(NotificationRequest request) override {
        shown.push_back(std::move(request));
        co_return takes;
    }
};

class NotificationServiceTest : public ::testing::Test {
protected:
    void deliver(Kind kind, std::int64_t available = 4'200'000'000,
                 std::int64_t recoverable = 12'300'000'000) {
        const auto handle = spawn(context_, [this, kind, available, recoverable] {
            return service_.deliver(kind, available, recoverable);
        });
        loop_.drain();
        ASSERT_TRUE(handle.done());
    }
    bool request() {
        std::optional<bool> result;
        spawn(context_, [this, &result]() -> Task<void> {
            const bool granted = co_await service_.requestAuthorization();
            result = granted;
        });
        loop_.drain();
        return result.value();
    }

    ManualLoop loop_;
    TaskRegistry registry_;
    TaskContext context_{&loop_, nullptr, &loop_, {}, &registry_};
    std::shared_ptr<ScriptedCenter> center_ = std::make_shared<ScriptedCenter>();
    NotificationService service_{center_};
    testing::LanguageScope language_{Language::english};
};

TEST_F(NotificationServiceTest, AsksForSoundAndAlertAndTakesTheAnswer) {
    EXPECT_TRUE(request());
    center_->answer = {.granted = false};
    EXPECT_FALSE(request());
    EXPECT_THAT(center_->questions, ElementsAre(6, 6));
}

TEST_F(NotificationServiceTest, AnAnswerWithAnErrorIsNo) {
    center_->answer = {.granted = true, .failed = true};
    EXPECT_FALSE(request());
}

TEST_F(NotificationServiceTest, WhoeverHasBeenAskedIsNotAskedAgain) {
    for (const int status : {2, 3, 4}) {
        center_->status = status;
        center_->shown.clear();
        deliver(Kind::lowSpace);
        EXPECT_EQ(center_->shown.size(), 1U) << status;
    }
    EXPECT_THAT(center_->questions, IsEmpty());
}

TEST_F(NotificationServiceTest, WhereNobodyWasAskedYetTheAnswerDecides) {
    center_->status = 0;
    deliver(Kind::lowSpace);
    EXPECT_THAT(center_->questions, ElementsAre(6));
    EXPECT_EQ(center_->shown.size(), 1U);
    center_->answer = {.granted = false};
    deliver(Kind::lowSpace);
    EXPECT_THAT(center_->questions, ElementsAre(6, 6));
    EXPECT_EQ(center_->shown.size(), 1U);
}

TEST_F(NotificationServiceTest, DeniedAndUnknownAnswersShowNothingAndAskNothing) {
    for (const int status : {1, 5, -1, 1000}) {
        center_->status = status;
        deliver(Kind::scanCompleted);
    }
    EXPECT_EQ(center_->asked, 4);
    EXPECT_THAT(center_->shown, IsEmpty());
    EXPECT_THAT(center_->questions, IsEmpty());
}

TEST_F(NotificationServiceTest, EachKindHasItsTextsAndItsFigure) {
    deliver(Kind::lowSpace);
    deliver(Kind::largeNewOpportunity);
    deliver(Kind::scanCompleted);
    ASSERT_EQ(center_->shown.size(), 3U);
    EXPECT_EQ(center_->shown[0].title, localized("alert.lowSpace.title"));
    EXPECT_EQ(center_->shown[0].body, localized("alert.lowSpace.body %@", "4.2 GB"));
    EXPECT_EQ(center_->shown[1].title, localized("alert.largeOpportunity.title"));
    EXPECT_EQ(center_->shown[1].body, localized("alert.largeOpportunity.body %@", "12.3 GB"));
    EXPECT_EQ(center_->shown[2].title, localized("alert.scanCompleted.title"));
    EXPECT_EQ(center_->shown[2].body, localized("alert.scanCompleted.body %@", "12.3 GB"));
    EXPECT_EQ(center_->shown[0].body, "Only 4.2 GB are left on your disk. Open Vesko to see what can go.");
}

TEST_F(NotificationServiceTest, SpeaksPortugueseToWhomItIsTheLanguage) {
    setCurrentLanguage(Language::portuguese);
    deliver(Kind::lowSpace);
    ASSERT_EQ(center_->shown.size(), 1U);
    EXPECT_EQ(center_->shown[0].title, "Pouco espaço livre");
    EXPECT_EQ(center_->shown[0].body,
              "Restam só 4,2 GB no seu disco. Abra o Vesko para ver o que pode sair.");
}

TEST_F(NotificationServiceTest, EachHasAnIdentifierOfItsOwnThatBeginsWithItsKind) {
    deliver(Kind::largeNewOpportunity);
    deliver(Kind::largeNewOpportunity);
    deliver(Kind::lowSpace);
    const std::regex form("([A-Za-z]+)-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    std::vector<std::string> words;
    std::set<std::string> all;
    for (const NotificationRequest& request : center_->shown) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(request.identifier, match, form)) << request.identifier;
        words.push_back(match[1]);
        all.insert(request.identifier);
    }
    EXPECT_THAT(words, ElementsAre("largeNewOpportunity", "largeNewOpportunity", "lowSpace"));
    EXPECT_EQ(all.size(), 3U);
}

TEST_F(NotificationServiceTest, AFailureIsPassedOver) {
    center_->takes = false;
    deliver(Kind::lowSpace);
    EXPECT_EQ(center_->shown.size(), 1U);
}

} // namespace
} // namespace vesko
