#include "base/Environment.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace vesko {
namespace {

/// Gives a variable a value, or takes it away, and puts back what was there.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        set(value);
    }
    ~Variable() { set(before_ ? before_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void set(const char* value) const {
        if (value)
            setenv(name_, value, 1);
        else
            unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

bool isDevelopmentHostWith(const char* playgrounds, const char* tests) {
    const Variable first("XCODE_RUNNING_FOR_PLAYGROUNDS", playgrounds);
    const Variable second("XCTestConfigurationFilePath", tests);
    return isDevelopmentHost();
}

TEST(Environment, WithoutEitherVariableAPersonRunsTheProgram) {
    EXPECT_FALSE(isDevelopmentHostWith(nullptr, nullptr));
}

TEST(Environment, ThePlaygroundsVariableCountsOnlyAsOne) {
    EXPECT_TRUE(isDevelopmentHostWith("1", nullptr));
    for (const char* other : {"", "0", "YES", "true", "11", " 1"})
        EXPECT_FALSE(isDevelopmentHostWith(other, nullptr)) << other;
}

TEST(Environment, TheTestsVariableCountsWhateverItHolds) {
    for (const char* value : {"", "0", "/tmp/tests.xctestconfiguration"})
        EXPECT_TRUE(isDevelopmentHostWith(nullptr, value)) << value;
}

TEST(Environment, EitherVariableIsEnough) {
    EXPECT_TRUE(isDevelopmentHostWith("1", ""));
    EXPECT_TRUE(isDevelopmentHostWith("0", ""));
}

TEST(Environment, TheVariablesAreReadAtEachCall) {
    EXPECT_FALSE(isDevelopmentHostWith(nullptr, nullptr));
    EXPECT_TRUE(isDevelopmentHostWith("1", nullptr));
    EXPECT_FALSE(isDevelopmentHostWith(nullptr, nullptr));
}

} // namespace
} // namespace vesko
