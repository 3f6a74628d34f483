// Texts in the window: never read as markup, never cut without an ellipsis, whatever they are and however
// large.
#include "ui/AWindow.h"
#include <QFont>
#include <QGuiApplication>
#include <QQuickItem>

namespace vesko {
namespace {

using namespace testing;

TEST(AnyWindow, ShowsEveryTextButThePromptOfTheConfirmWordAsPlain) {
    const QString word = QString::fromStdString(localized("delete.confirm.word"));
    for (const QString& state : stateNames()) {
        WindowDriver driver(state != QLatin1String("access"));
        driver.show();
        enterState(driver.stage, state);
        int texts = 0;
        for (const QQuickItem* each : driver.items("Label") + driver.items("QQuickText")) {
            ++texts;
            // Qt::PlainText; the prompt is made of the catalog's texts alone.
            const QString shown = each->property("text").toString();
            if (!shown.contains(word))
                EXPECT_EQ(each->property("textFormat").toInt(), 0)
                    << state.toStdString() << ": " << shown.toStdString();
        }
        EXPECT_GT(texts, 3) << state.toStdString();
    }
}

TEST_F(AWindow, WhatAModelWroteIsALineOfPlainTextHoweverLongItIs) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    ScannableItem one = item("/home/someone/Library/Caches/one", 900'000'000);
    ScannableItem two = item("/home/someone/Library/Caches/two", 800'000'000);
    Enrichment written;
    written.friendlyName = "<h1>Name</h1> %1$@\n\u202eevil " + std::string(10'000, 'n');
    written.reason = "<b>bold</b> <img src='http://127.0.0.1/'> %@\nsecond line\r\n\u202ethird " +
                     std::string(10'000, 'r');
    written.safety = Safety::risco;
    written.source = EnrichmentSource::model;
    model().enrichmentStore().apply({{one.enrichmentKey, written}, {two.enrichmentKey, written}});
    showGroups(model(),
               {group("discover.caches", {one, two}), group("apps.unused", {item("/x/a", 5'000'000)})});
    driver.stage.settle();
    list().setExpanded(list().rowOfGroup("discover.caches"), true);
    driver.stage.settle();
    EXPECT_EQ(driver.textFaults(), QStringList());
    const auto isHarmless = [](const QString& told) {
        return told.size() < 1000 && !told.contains(QLatin1Char('\n')) && !told.contains(QChar(0x202e));
    };
    int found = 0;
    for (const QAccessible::Role role : {QAccessible::Button, QAccessible::ListItem, QAccessible::CheckBox})
        for (QAccessibleInterface* each : driver.all(role)) {
            for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description}) {
                const QString told = each->text(kind);
                EXPECT_TRUE(isHarmless(told)) << told.toStdString();
                found += static_cast<int>(told.contains(QLatin1String("<b>bold</b> <img src='http")) ||
                                          told.contains(QLatin1String("<h1>Name</h1> %1$@")));
            }
        }
    // The reason of the group, and each item's name in its row and in its box.
    EXPECT_GE(found, 5);
}

struct Crowded {
    const char* name;
    double scale; ///< of the text
    int stretch;  ///< of the letters, in percent
    QSize size;
};
void PrintTo(const Crowded& crowded, std::ostream* stream) { *stream << crowded.name; }

class Crowding : public ::testing::TestWithParam<std::tuple<Crowded, Language>> {};

TEST_P(Crowding, NothingLeavesItsPlaceOrIsCutWithoutAnEllipsis) {
    const auto& [crowded, language] = GetParam();
    setCurrentLanguage(language);
    const QFont usual = QGuiApplication::font();
    QFont stretched = usual;
    stretched.setStretch(crowded.stretch);
    QGuiApplication::setFont(stretched);
    {
        WindowDriver driver;
        driver.stage.window.theme().setReducedMotion(true);
        driver.stage.window.theme().setBaseSize(13 * crowded.scale);
        driver.show();
        driver.window()->resize(crowded.size);
        for (const char* state : {"home", "home-busy", "home-inspector", "expanded", "scanning", "failed",
                                  "deleting", "awaiting", "confirm"}) {
            enterState(driver.stage, QString::fromLatin1(state));
            for (const QString& fault : driver.textFaults())
                ADD_FAILURE() << state << ": " << fault.toStdString();
            if (QLatin1String(state) == QLatin1String("confirm")) break;
            driver.stage.model->scanProgress = std::optional<ScanProgress>();
            driver.stage.model->deletionProgress = std::optional<DeletionProgress>();
            driver.stage.model->phase = CleanupPhase::idle();
        }
    }
    QGuiApplication::setFont(usual);
}

INSTANTIATE_TEST_SUITE_P(
    Window, Crowding,
    ::testing::Combine(::testing::Values(Crowded{"Usual", 1, 100, QSize(1100, 760)},
                                         Crowded{"Smallest", 1, 100, QSize(900, 600)},
                                         Crowded{"LongerTexts", 1, 140, QSize(900, 600)},
                                         Crowded{"LargerTexts", 1.4, 100, QSize(1100, 760)},
                                         Crowded{"DoubleTexts", 2, 100, QSize(1800, 1200)}),
                       ::testing::Values(Language::english, Language::portuguese)),
    [](const auto& each) {
        return std::string(std::get<0>(each.param).name) +
               (std::get<1>(each.param) == Language::english ? "En" : "Pt");
    });

TEST_F(AWindow, ANameOf255CharactersIsElidedAndItsPathSpokenWhole) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    const std::string path = "/home/someone/.Trash/" + std::string(255, 'w');
    showGroups(model(), {group("trash", {item(path, 9'000'000), item("/x/y", 1'000'000)})});
    driver.stage.settle();
    list().setExpanded(1, true);
    driver.stage.settle();
    EXPECT_TRUE(driver.textFaults().isEmpty());
    bool spoken = false;
    for (QAccessibleInterface* each : driver.all(QAccessible::ListItem)) {
        spoken = spoken || each->text(QAccessible::Description).toStdString() == path;
    }
    EXPECT_TRUE(spoken);
}

} // namespace
} // namespace vesko
