// The real QML in a real window, driven as a person or an assistive tool drives it.
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTextCursor>
#include <QTextDocument>
#include <filesystem>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class AWindow : public ::testing::Test {
protected:
    void showList() {
        driver.show();
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        showGroups(*driver.stage.model, sampleGroups());
        driver.stage.settle();
    }
    void showTwoGroups() {
        driver.show();
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        showGroups(*driver.stage.model,
                   {group("trash", {item("/n/a", 500'000'000), item("/n/b", 300'000'000)}),
                    group("cache.npm", {item("/n/c", 700'000'000)})});
        driver.stage.settle();
    }
    static QString text(const char* key) { return QString::fromStdString(localized(key)); }
    CleanupViewModel& model() { return *driver.stage.model; }
    CleanupListModel& list() { return *driver.stage.cleanup.list(); }

    WindowDriver driver;
};

// Frame.

TEST(AccessScreen, WithoutAccessItIsAllThereIsUntilTheButtonFindsTheGrant) {
    WindowDriver driver(false);
    driver.show();
    EXPECT_TRUE(driver.find(QAccessible::Heading, QString::fromStdString(localized("diskAccess.title"))));
    EXPECT_FALSE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    const QString check = QString::fromStdString(localized("diskAccess.alreadyGranted"));
    driver.press(QAccessible::Button, check);
    EXPECT_FALSE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    driver.stage.access = true;
    driver.press(QAccessible::Button, check);
    EXPECT_TRUE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    EXPECT_FALSE(driver.find(QAccessible::Heading, QString::fromStdString(localized("diskAccess.title"))));
}

TEST(AccessScreen, ItsFirstButtonOpensTheSettings) {
    WindowDriver driver(false);
    driver.show();
    driver.press(QAccessible::Button, QString::fromStdString(localized("diskAccess.linux.openFolder")));
    EXPECT_EQ(driver.stage.settingsOpened, 1);
}

TEST_F(AWindow, HasTheNameTheSizeAndTheSmallestSize) {
    driver.show();
    EXPECT_EQ(driver.window()->title(), text("app.name"));
    EXPECT_EQ(driver.window()->size(), QSize(1100, 760));
    EXPECT_EQ(driver.window()->minimumSize(), QSize(900, 600));
}

TEST_F(AWindow, NoSelectionShowsHome) {
    driver.show();
    driver.stage.shell.setSelection(QString());
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::Button, text("home.shortcut.reviewCleanup")));
}

TEST_F(AWindow, TheSidebarLeadsToItsScreens) {
    driver.show();
    driver.press(QAccessible::PageTab, text("sidebar.cleanup"));
    EXPECT_TRUE(driver.find(QAccessible::Button, text("cleanup.scan")));
    driver.press(QAccessible::PageTab, text("sidebar.home"));
    EXPECT_FALSE(driver.find(QAccessible::Button, text("cleanup.scan")));
}

TEST_F(AWindow, ADisabledShortcutTakesNoClicks) {
    driver.stage.model->phase = CleanupPhase::cleaning();
    driver.show();
    driver.press(QAccessible::Button, text("home.shortcut.scanNow"));
    EXPECT_EQ(model().phase->kind, CleanupPhase::Kind::cleaning);
    driver.press(QAccessible::Button, text("home.shortcut.reviewCleanup"));
    EXPECT_EQ(driver.stage.shell.selection(), "cleanup");
}

// Confirmation.

TEST_F(AWindow, ATypedWordWithATrailingBlankLeavesTheActionDisabled) {
    showList();
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    driver.type(text("delete.confirm.word") + " ");
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("delete.confirm.action")));
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(driver.find(QAccessible::Dialog, text("delete.confirm.title")));
    driver.key(Qt::Key_Backspace);
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, text("delete.confirm.action")));
}

TEST_F(AWindow, ReturnInTheFieldDeletesUnderTheSameCondition) {
    const FileURL victim = driver.stage.home.file("victim/data", "12345");
    const FileURL spared = driver.stage.home.file("spared/data", "12345");
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    showGroups(model(), {group("cache.npm", {item(victim.parent().path(), 9'000'000)}),
                         group("trash", {item(spared.parent().path(), 4'000'000)})});
    driver.stage.settle();
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(std::filesystem::exists(victim.path()));
    driver.type(text("delete.confirm.word"));
    driver.key(Qt::Key_Return);
    EXPECT_FALSE(driver.find(QAccessible::Dialog, text("delete.confirm.title")));
    driver.waitFor([&] { return model().cleanupMessage->has_value(); });
    EXPECT_FALSE(std::filesystem::exists(victim.path()));
    EXPECT_TRUE(std::filesystem::exists(spared.path()));
    EXPECT_EQ(list().rowOfGroup("cache.npm"), -1);
    EXPECT_GE(list().rowOfGroup("trash"), 0);
}

TEST_F(AWindow, CancelAndEscapeCloseTheSheetWithNoEffectAndForgetTheWord) {
    showList();
    for (const bool byKey : {false, true}) {
        driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
        driver.type(text("delete.confirm.word"));
        if (byKey) {
            driver.key(Qt::Key_Escape);
        } else {
            driver.press(QAccessible::Button, text("action.cancel"));
        }
        EXPECT_FALSE(driver.find(QAccessible::Dialog, text("delete.confirm.title")));
        EXPECT_EQ(model().phase->kind, CleanupPhase::Kind::idle);
    }
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("delete.confirm.action")));
}

TEST_F(AWindow, TheSheetHoldsTheKeyboard) {
    showList();
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    driver.type(text("delete.confirm.word"));
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        driver.key(Qt::Key_Tab);
        visited.append(driver.focusedName());
    }
    const QStringList round{text("action.cancel"), text("delete.confirm.action"), text("a11y.confirmField")};
    EXPECT_EQ(visited, round + round);
}

TEST_F(AWindow, AfterALanguageChangeTheConfirmWordFollows) {
    showList();
    setCurrentLanguage(Language::portuguese);
    driver.stage.window.languageChanged();
    driver.stage.settle();
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    driver.type(QString::fromStdString(catalogText("delete.confirm.word", Language::english)));
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("delete.confirm.action")));
    driver.key(Qt::Key_A, Qt::ControlModifier);
    driver.type(text("delete.confirm.word"));
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, text("delete.confirm.action")));
}

TEST_F(AWindow, TheConfirmWordStandsInLettersOfEqualWidth) {
    showList();
    driver.press(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    const QString face = driver.stage.window.theme().fixedFont();
    EXPECT_TRUE(QFontInfo(QFont(face)).fixedPitch()) << face.toStdString();
    EXPECT_EQ(driver.window()->activeFocusItem()->property("font").value<QFont>().family().toStdString(),
              face.toStdString());
    // The prompt is spoken as it reads; its word alone is in that face.
    QAccessibleInterface* prompt = driver.find(QAccessible::StaticText, driver.stage.cleanup.confirmPrompt());
    ASSERT_TRUE(prompt);
    QTextDocument document;
    document.setHtml(prompt->object()->property("text").toString());
    EXPECT_EQ(document.toPlainText().toStdString(), driver.stage.cleanup.confirmPrompt().toStdString());
    const QTextCursor word = document.find(driver.stage.cleanup.confirmWord());
    EXPECT_EQ(word.charFormat().fontFamilies().toStringList(), QStringList{face});
    EXPECT_NE(document.find(QStringLiteral(".")).charFormat().fontFamilies().toStringList(),
              QStringList{face});
}

// List.

TEST_F(AWindow, TheWholeCleanupWorksByKeyboardAlone) {
    const FileURL victim = driver.stage.home.file("victim/data", "12345");
    driver.show();
    driver.key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(driver.stage.shell.selection(), "cleanup");
    showGroups(model(),
               {group("trash", {item(victim.parent().path(), 4'000'000), item("/none/other", 2'000'000)})});
    driver.stage.settle();
    driver.tabTo(text("sidebar.cleanup"), QAccessible::List);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Down);  // the group
    driver.key(Qt::Key_Right); // expands
    EXPECT_EQ(list().rowCount(), 4);
    driver.key(Qt::Key_Down); // its first item
    driver.key(Qt::Key_Space);
    EXPECT_EQ(*model().selectedItemIDs, URLSet{victim.parent()});
    driver.key(Qt::Key_Left); // back to the group
    driver.key(Qt::Key_Left); // collapses
    EXPECT_EQ(list().rowCount(), 2);
    driver.tabTo(driver.stage.cleanup.recoverLabel(), QAccessible::Button);
    driver.key(Qt::Key_Space);
    driver.type(text("delete.confirm.word"));
    driver.key(Qt::Key_Return);
    driver.waitFor([&] { return model().cleanupMessage->has_value(); });
    EXPECT_FALSE(std::filesystem::exists(victim.path()));
}

TEST_F(AWindow, EveryControlOfTheListIsReachedByTab) {
    showList();
    driver.key(Qt::Key_F, Qt::ControlModifier);
    QSet<QString> reached;
    for (int i = 0; i < 60; ++i) {
        driver.key(Qt::Key_Tab);
        reached.insert(driver.focusedName());
    }
    for (const QString& name : {text("cleanup.scan"), text("a11y.search"), text("sidebar.home"),
                                text("sidebar.cleanup"), driver.stage.cleanup.recoverLabel()}) {
        EXPECT_TRUE(reached.contains(name)) << name.toStdString();
    }
}

TEST_F(AWindow, TheSearchTakesTheKeyboardFiltersAndEscapeClearsIt) {
    showList();
    const int before = list().rowCount();
    driver.key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(driver.focusedName(), text("a11y.search"));
    driver.type(QStringLiteral("npm"));
    EXPECT_EQ(*model().searchText, "npm");
    EXPECT_EQ(list().rowCount(), 2);
    driver.key(Qt::Key_Escape);
    EXPECT_EQ(*model().searchText, "");
    EXPECT_EQ(list().rowCount(), before);
}

TEST_F(AWindow, ASearchWithoutHitsShowsNoResultsAndTheListIsGone) {
    showList();
    model().searchText = std::string("zzzz");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("empty.noResults.title")));
    EXPECT_FALSE(driver.find(QAccessible::Grouping, text("a11y.storageBar")));
}

TEST_F(AWindow, ABoxNeverFlipsItself) {
    showList();
    model().phase = CleanupPhase::cleaning(); // refuses every change of the selection
    const QString name =
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0])));
    model().phase = CleanupPhase::idle();
    driver.stage.settle();
    driver.stage.cleanup.scrollToSection(QStringLiteral("development"));
    driver.stage.settle();
    ASSERT_TRUE(driver.find(QAccessible::CheckBox, name));
    ASSERT_TRUE(driver.isChecked(name));
    model().phase = CleanupPhase::cleaning();
    driver.press(QAccessible::CheckBox, name);
    EXPECT_TRUE(driver.isChecked(name));
}

TEST_F(AWindow, AnUnsupportedObjectHasADisabledBox) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    showGroups(model(), {group("cache.cargo", {item("/a/one", 9'000'000),
                                               item("/a/two", 4'000'000, "docker:unsupported")})});
    driver.stage.settle();
    list().setExpanded(1, true);
    driver.stage.settle();
    const auto boxName = [&](int row) {
        return QString::fromStdString(
            localized("a11y.selectItem %@",
                      list().data(list().index(row), CleanupListModel::TitleRole).toString().toStdString()));
    };
    int disabled = 0;
    for (QAccessibleInterface* each : driver.all(QAccessible::CheckBox))
        disabled += each->state().disabled ? 1 : 0;
    EXPECT_EQ(disabled, 1) << boxName(3).toStdString();
    driver.press(
        QAccessible::CheckBox,
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0]))));
    driver.press(
        QAccessible::CheckBox,
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0]))));
    disabled = 0;
    for (QAccessibleInterface* each : driver.all(QAccessible::CheckBox))
        disabled += each->state().disabled ? 1 : 0;
    EXPECT_EQ(disabled, 1);
    EXPECT_FALSE(model().selectedItemIDs->contains(FileURL("/a/two")));
}

TEST_F(AWindow, ReviewMessageStaysUntilItsButtonIsPressed) {
    showList();
    model().reviewMessage = std::optional<std::string>("One item was put where it belongs.");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::AlertMessage, QStringLiteral("One item was put where it belongs.")));
    driver.press(QAccessible::Button, text("a11y.dismiss"));
    EXPECT_FALSE(model().reviewMessage->has_value());
    EXPECT_FALSE(
        driver.find(QAccessible::AlertMessage, QStringLiteral("One item was put where it belongs.")));
}

TEST_F(AWindow, TheReviewsMarkStandsWhereTheReviewAddedSomethingAndNowhereElse) {
    showTwoGroups();
    const QString mark = text("a11y.aiDiscovered");
    EXPECT_TRUE(driver.all(QAccessible::Graphic).isEmpty());
    model().aiDiscoveredURLs = URLSet{FileURL("/n/b")};
    driver.stage.settle();
    // Of a collapsed group its row, of an expanded one that item's row too.
    EXPECT_EQ(driver.all(QAccessible::Graphic).size(), 1);
    list().setExpanded(list().rowOfGroup("trash"), true);
    driver.stage.settle();
    const QList<QAccessibleInterface*> marks = driver.all(QAccessible::Graphic);
    ASSERT_EQ(marks.size(), 2);
    for (const QAccessibleInterface* each : marks) EXPECT_EQ(each->text(QAccessible::Name), mark);
    model().aiDiscoveredURLs = URLSet{};
    driver.stage.settle();
    EXPECT_TRUE(driver.all(QAccessible::Graphic).isEmpty());
}

TEST_F(AWindow, WhileVerdictsAreMadeTheBadgesSayItAndTheButtonWaits) {
    showTwoGroups();
    const QString recover = driver.stage.cleanup.recoverLabel();
    ASSERT_FALSE(driver.isDisabled(QAccessible::Button, recover));
    const auto row = [](const char* group, const char* verdict, const char* size) {
        return QString::fromStdString(localized("a11y.group %1$@ %2$@ %3$@",
                                                localized("probe." + std::string(group) + ".title"),
                                                localized(verdict), size));
    };
    model().isEnriching = true;
    model().analyzingKeys = std::unordered_set<EnrichmentKey>{{"url:/n/b"}};
    driver.stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, recover));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("action.waitingAI")));
    EXPECT_TRUE(
        driver.find(QAccessible::StaticText, QString::fromStdString(localized("chip.aiRefining %lld", 1))));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("trash", "safety.analyzing", "800 MB")));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("cache.npm", "safety.seguro", "700 MB")));
    model().analyzingKeys = std::unordered_set<EnrichmentKey>();
    model().isEnriching = false;
    driver.stage.settle();
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, recover));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("action.permanentWarning")));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("trash", "safety.revisar", "800 MB")));
}

// What others wrote.

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

TEST_F(AWindow, TheMessageAfterDeletingEverythingStandsAboveTheEmptyState) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    showGroups(model(), {});
    model().cleanupMessage = std::optional<std::string>("40 items deleted.");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::AlertMessage, QStringLiteral("40 items deleted.")));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("empty.noResults.title")));
}

TEST_F(AWindow, AScanIsCancelledFromItsBanner) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    model().phase = CleanupPhase::scanning();
    driver.stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("cleanup.scan")));
    model().scanProgress = std::optional(ScanProgress{"npm", 1, 1, 1, 0.1});
    driver.stage.settle();
    driver.press(QAccessible::Button, text("action.cancel"));
    EXPECT_EQ(model().phase->kind, CleanupPhase::Kind::idle);
}

TEST_F(AWindow, TheListKeepsItsPlaceWhileAScanUpdatesIt) {
    showList();
    driver.stage.window.theme().setReducedMotion(true);
    driver.stage.cleanup.scrollToSection(QStringLiteral("downloads"));
    driver.stage.settle();
    QQuickItem* view = driver.item("QQuickListView");
    ASSERT_TRUE(view);
    const double before = view->property("contentY").toDouble();
    ASSERT_GT(before, 100);
    model().indexedBytes = std::int64_t{1'000'000};
    std::vector<CleanupGroup> groups = *model().groups;
    groups.push_back(group("cache.yarn", {item("/yarn", 1'000'000)}));
    showGroups(model(), groups);
    driver.stage.settle();
    const double after = view->property("contentY").toDouble();
    EXPECT_NEAR(after, before, 70) << "at most the row that came above";
}

TEST_F(AWindow, TheMenuOfARowRevealsAndExpands) {
    showList();
    driver.stage.window.theme().setReducedMotion(true);
    driver.tabTo(text("sidebar.cleanup"), QAccessible::List);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Menu);
    EXPECT_TRUE(driver.find(QAccessible::MenuItem, text("menu.expand")));
    driver.press(QAccessible::MenuItem, text("menu.expand"));
    EXPECT_TRUE(list().isExpanded(1));
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Menu);
    driver.key(Qt::Key_Return); // the first entry
    EXPECT_EQ(driver.stage.files->revealed.size(), 1u);
    EXPECT_EQ(driver.stage.files->revealed[0], *list().url(2));
}

// Sizes.

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
