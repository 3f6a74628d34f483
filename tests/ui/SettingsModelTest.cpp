#include "ui/SettingsModel.h"
#include "base/StringCatalog.h"
#include "ui/Icon.h"
#include "ui/ScreenStage.h"
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class Settings : public ::testing::Test {
protected:
    ScreenStage stage;
    SettingsModel& settings = stage.settings;
};

TEST_F(Settings, HaveThreeTabsInOrder) {
    QStringList told;
    for (const QVariant& each : settings.tabs()) {
        const QVariantMap tab = each.toMap();
        told << tab["id"].toString() + ' ' + tab["label"].toString() + ' ' + tab["icon"].toString();
        EXPECT_TRUE(hasIcon(tab["icon"].toString()));
        EXPECT_FALSE(catalogText(tab["label"].toString().toStdString(), Language::portuguese).empty());
    }
    EXPECT_EQ(told, (QStringList{"general settings.tab.general gearshape",
                                 "updates settings.tab.updates arrow.triangle.2.circlepath",
                                 "about settings.tab.about info.circle"}));
}

TEST_F(Settings, OpenAtTheTabThatTheyShowedLast) {
    EXPECT_FALSE(settings.isOpen());
    settings.open();
    EXPECT_TRUE(settings.isOpen());
    EXPECT_EQ(settings.tab(), "general");
    settings.setTab("updates");
    settings.close();
    EXPECT_FALSE(settings.isOpen());
    settings.open();
    EXPECT_EQ(settings.tab(), "updates");
    settings.setTab("no such tab");
    EXPECT_EQ(settings.tab(), "updates");
}

TEST_F(Settings, AskedForAgainComeToTheFront) {
    QSignalSpy raised(&settings, &SettingsModel::raiseRequested);
    settings.open();
    EXPECT_EQ(raised.count(), 0);
    settings.openAbout();
    EXPECT_EQ(raised.count(), 1);
    EXPECT_EQ(settings.tab(), "about");
}

TEST_F(Settings, ReadThePreferencesEachTimeTheyOpen) {
    settings.open();
    EXPECT_EQ(settings.alerts()->lowSpaceGB(), 10);
    settings.close();
    stage.storedPreferences.lowSpaceThresholdBytes = 33'000'000'000;
    settings.open();
    EXPECT_EQ(settings.alerts()->lowSpaceGB(), 33);
    EXPECT_EQ(stage.preferencesSaved, 0);
}

TEST_F(Settings, ACheckForUpdatesShowsWhereItsAnswerWillStand) {
    settings.checkForUpdates();
    EXPECT_EQ(stage.updater->checks, 1);
    EXPECT_TRUE(settings.isOpen());
    EXPECT_EQ(settings.tab(), "updates");
}

TEST_F(Settings, WhatCannotCheckIsNotAsked) {
    stage.updater->set(false, std::nullopt);
    settings.checkForUpdates();
    settings.updates()->check();
    EXPECT_EQ(stage.updater->checks, 0);
    EXPECT_FALSE(settings.isOpen());
}

TEST_F(Settings, TheUpdatesTellWhatTheUpdaterSays) {
    UpdatesModel& updates = *settings.updates();
    QSignalSpy told(&updates, &UpdatesModel::changed);
    EXPECT_TRUE(updates.canCheck());
    updates.check();
    EXPECT_FALSE(updates.canCheck());
    EXPECT_GE(told.count(), 1);
    EXPECT_EQ(updates.newerVersion(), "");
    EXPECT_FALSE(updates.hasPage());
    stage.updater->set(true, NewerVersion{"1.4", "Quicker.\n", ""});
    EXPECT_EQ(updates.newerVersion(), "1.4");
    EXPECT_EQ(updates.newerNotes(), "Quicker.");
    EXPECT_FALSE(updates.hasPage());
    stage.updater->set(true, NewerVersion{"1.4", "", "https://example.org"});
    EXPECT_TRUE(updates.hasPage());
    updates.openPage();
    EXPECT_EQ(stage.updater->pagesOpened, 1);
    updates.setAutomatic(false);
    EXPECT_FALSE(stage.updater->automatic);
    EXPECT_FALSE(updates.automatic());
}

TEST_F(Settings, AMessageToTheContactGoesToItsAddress) {
    settings.about()->writeToContact();
    ASSERT_EQ(stage.linksOpened.size(), 1);
    EXPECT_EQ(stage.linksOpened.first().toString(), "mailto:hello@example.org");
}

TEST(AboutModel, WithoutAContactNothingIsOpened) {
    int opened = 0;
    const AboutModel about({"1.0", "", [&](const QUrl&) { ++opened; }});
    about.writeToContact();
    EXPECT_EQ(opened, 0);
}

} // namespace
} // namespace vesko
