// What assistive tools are told in each state, compared with what is stored beside this test. After a wanted
// change the trees are written anew by: vesko-states --folder FOLDER (in both languages).
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QFile>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class StoredTree : public ::testing::TestWithParam<std::tuple<std::string, Language>> {};

TEST_P(StoredTree, IsWhatAssistiveToolsGet) {
    const auto& [state, language] = GetParam();
    setCurrentLanguage(language);
    WindowDriver driver(state != "access");
    driver.stage.window.theme().setReducedMotion(true);
    driver.stage.show();
    enterState(driver.stage, QString::fromStdString(state));
    const QString name =
        QStringLiteral(VESKO_TREES "/%1-%2.txt")
            .arg(QString::fromStdString(state),
                 language == Language::english ? QStringLiteral("en") : QStringLiteral("pt-BR"));
    QFile stored(name);
    ASSERT_TRUE(stored.open(QIODevice::ReadOnly)) << name.toStdString();
    EXPECT_EQ(accessibleTree(shownWindow(driver.stage)).toStdString(), stored.readAll().toStdString());
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const QString& name : stateNames()) all.push_back(name.toStdString());
    return all;
}

INSTANTIATE_TEST_SUITE_P(Window, StoredTree,
                         ::testing::Combine(::testing::ValuesIn(names()),
                                            ::testing::Values(Language::english, Language::portuguese)),
                         [](const auto& each) {
                             std::string name = std::get<0>(each.param);
                             for (char& letter : name) {
                                 if (letter == '-') letter = '_';
                             }
                             return name + (std::get<1>(each.param) == Language::english ? "_en" : "_pt");
                         });

} // namespace
} // namespace vesko
