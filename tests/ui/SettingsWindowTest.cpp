// The settings window, driven as a person or an assistive tool drives it.
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QAccessible>
#include <QQuickItem>
#include <QTest>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class SettingsWindow : public ::testing::Test {
protected:
    void open(const char* tab = "general") {
        driver.show();
        stage.settings.setTab(QString::fromLatin1(tab));
        driver.key(Qt::Key_Comma, Qt::ControlModifier);
        takeKeyboard();
    }
    void takeKeyboard() {
        ASSERT_TRUE(stage.settingsWindow());
        stage.settingsWindow()->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(stage.settingsWindow(), 5000));
        stage.settle();
    }
    static QString text(const char* key) { return QString::fromStdString(localized(key)); }
    static QString threshold(const char* key, int gigabytes) {
        return QString::fromStdString(localized(key, gigabytes));
    }
    bool says(const QString& words) { return driver.find(QAccessible::StaticText, words); }
    QAccessibleInterface* slider(const char* key) { return driver.find(QAccessible::Slider, text(key)); }
    double valueOf(const char* key) {
        QAccessibleInterface* found = slider(key);
        return found && found->valueInterface() ? found->valueInterface()->currentValue().toDouble() : -1;
    }

    WindowDriver driver;
    ScreenStage& stage = driver.stage;
    static constexpr const char* lowSpaceToggle = "alert.preferences.lowSpace.toggle";
    static constexpr const char* lowSpaceSlider = "alert.preferences.lowSpace.slider";
    static constexpr const char* lowSpaceThreshold = "alert.preferences.lowSpace.threshold %lld";
    static constexpr const char* opportunityToggle = "alert.preferences.opportunity.toggle";
    static constexpr const char* opportunitySlider = "alert.preferences.opportunity.slider";
    static constexpr const char* opportunityThreshold = "alert.preferences.opportunity.threshold %lld";
    static constexpr const char* scanCompletedToggle = "alert.preferences.scanCompleted.toggle";
};

// The window.

TEST_F(SettingsWindow, OpensByItsKeyAndGoesByEscape) {
    driver.show();
    EXPECT_FALSE(stage.settingsWindow());
    driver.key(Qt::Key_Comma, Qt::ControlModifier);
    takeKeyboard();
    EXPECT_EQ(stage.settingsWindow()->title(), text("settings.title"));
    EXPECT_EQ(driver.focusedName(), text("settings.tab.general"));
    driver.key(Qt::Key_Escape);
    stage.settle();
    EXPECT_FALSE(stage.settingsWindow());
    EXPECT_FALSE(stage.settings.isOpen());
    EXPECT_TRUE(stage.window.window()->isVisible());
}

TEST_F(SettingsWindow, OpensAlsoWhereTheFilesCannotBeRead) {
    WindowDriver locked(false);
    locked.show();
    locked.key(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(locked.stage.settingsWindow());
}

TEST_F(SettingsWindow, GoesWithTheMainWindow) {
    open();
    stage.window.window()->close();
    stage.settle();
    EXPECT_FALSE(stage.settingsWindow());
    EXPECT_FALSE(stage.settings.isOpen());
}

TEST_F(SettingsWindow, ItsTabsLeadToTheirPages) {
    open();
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("alert.preferences.lowSpace.section")));
    driver.press(QAccessible::PageTab, text("settings.tab.updates"));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("settings.updates.manual.section")));
    EXPECT_FALSE(driver.find(QAccessible::Heading, text("alert.preferences.lowSpace.section")));
    driver.press(QAccessible::PageTab, text("settings.tab.about"));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("app.name")));
}

TEST_F(SettingsWindow, LeftAndRightGoFromTabToTab) {
    open();
    driver.key(Qt::Key_Right);
    EXPECT_EQ(stage.settings.tab(), "updates");
    EXPECT_EQ(driver.focusedName(), text("settings.tab.updates"));
    driver.key(Qt::Key_Right);
    driver.key(Qt::Key_Right);
    EXPECT_EQ(stage.settings.tab(), "about");
    driver.key(Qt::Key_Left);
    EXPECT_EQ(stage.settings.tab(), "updates");
}

TEST_F(SettingsWindow, SpaceReturnAndEnterActOnWhateverHasTheKeyboard) {
    open();
    const auto actOn = [&](QAccessible::Role role, const QString& name, Qt::Key key) {
        QAccessibleInterface* found = driver.find(role, name);
        ASSERT_TRUE(found) << name.toStdString();
        found->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        driver.key(key);
    };
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        const bool on = stage.storedPreferences.scanCompletedEnabled;
        actOn(QAccessible::CheckBox, text(scanCompletedToggle), key);
        EXPECT_EQ(stage.storedPreferences.scanCompletedEnabled, !on) << "a switch, by " << key;
        actOn(QAccessible::PageTab, text("settings.tab.updates"), key);
        EXPECT_EQ(stage.settings.tab(), "updates") << "a tab, by " << key;
        stage.settings.setTab("updates");
        stage.settle();
        const bool automatic = stage.updater->automatic;
        actOn(QAccessible::CheckBox, text("settings.updates.automatic"), key);
        EXPECT_EQ(stage.updater->automatic, !automatic) << "a box, by " << key;
        stage.settings.setTab("general");
        stage.settle();
    }
}

// The notifications.

TEST_F(SettingsWindow, TheKeyboardReachesEverythingInOrder) {
    open();
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        driver.key(Qt::Key_Tab);
        visited.append(driver.focusedName());
    }
    EXPECT_EQ(visited, (QStringList{text(lowSpaceToggle), text(lowSpaceSlider), text(opportunityToggle),
                                    text(opportunitySlider), text(scanCompletedToggle),
                                    text("settings.tab.general")}));
}

TEST_F(SettingsWindow, ThresholdAndSliderShowOnlyWhileTheSwitchIsOn) {
    open();
    EXPECT_TRUE(driver.isChecked(text(lowSpaceToggle)));
    EXPECT_TRUE(says(threshold(lowSpaceThreshold, 10)));
    EXPECT_TRUE(slider(lowSpaceSlider));
    driver.press(QAccessible::CheckBox, text(lowSpaceToggle));
    EXPECT_FALSE(driver.isChecked(text(lowSpaceToggle)));
    EXPECT_FALSE(says(threshold(lowSpaceThreshold, 10)));
    EXPECT_FALSE(slider(lowSpaceSlider));
    EXPECT_TRUE(says(threshold(opportunityThreshold, 5)));
    driver.press(QAccessible::CheckBox, text(opportunityToggle));
    EXPECT_FALSE(slider(opportunitySlider));
    driver.press(QAccessible::CheckBox, text(lowSpaceToggle));
    EXPECT_TRUE(slider(lowSpaceSlider));
    EXPECT_EQ(stage.storedPreferences,
              (NotificationPreferences{true, 10'000'000'000, false, 5'000'000'000, false}));
    EXPECT_EQ(stage.preferencesSaved, 3);
    EXPECT_EQ(stage.permission->requests, 1);
}

TEST_F(SettingsWindow, TheSlidersMoveByKeysAndStopAtTheirEnds) {
    open();
    driver.tabTo(text(lowSpaceSlider), QAccessible::Slider);
    driver.key(Qt::Key_Right);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 11'000'000'000);
    EXPECT_TRUE(says(threshold(lowSpaceThreshold, 11)));
    driver.key(Qt::Key_Left);
    driver.key(Qt::Key_Down);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 9'000'000'000);
    driver.key(Qt::Key_PageUp);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 14'000'000'000);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Left);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 5'000'000'000);
    driver.key(Qt::Key_End);
    driver.key(Qt::Key_Right);
    driver.key(Qt::Key_PageUp);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 50'000'000'000);
    driver.tabTo(text(opportunitySlider), QAccessible::Slider);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_PageDown);
    EXPECT_EQ(stage.storedPreferences.largeOpportunityDeltaBytes, 1'000'000'000);
    driver.key(Qt::Key_End);
    driver.key(Qt::Key_Up);
    EXPECT_EQ(stage.storedPreferences.largeOpportunityDeltaBytes, 20'000'000'000);
}

TEST_F(SettingsWindow, AssistiveToolsReadAndSetTheSliders) {
    open();
    QAccessibleInterface* found = slider(lowSpaceSlider);
    ASSERT_TRUE(found && found->valueInterface() && found->actionInterface());
    EXPECT_EQ(found->valueInterface()->minimumValue().toDouble(), 5);
    EXPECT_EQ(found->valueInterface()->maximumValue().toDouble(), 50);
    EXPECT_EQ(found->valueInterface()->minimumStepSize().toDouble(), 1);
    EXPECT_EQ(found->valueInterface()->currentValue().toDouble(), 10);
    found->valueInterface()->setCurrentValue(17);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 17'000'000'000);
    found->valueInterface()->setCurrentValue(1000);
    EXPECT_EQ(valueOf(lowSpaceSlider), 50);
    found->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(valueOf(lowSpaceSlider), 49);
    found->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(valueOf(lowSpaceSlider), 50);
    EXPECT_EQ(driver.find(QAccessible::CheckBox, text(lowSpaceToggle))->valueInterface(), nullptr);
}

TEST_F(SettingsWindow, TheSlidersMoveByThePointer) {
    open();
    const QList<QQuickItem*> sliders = driver.items("ThresholdSlider");
    ASSERT_EQ(sliders.size(), 2);
    driver.click(sliders[0], {sliders[0]->width() - 1, sliders[0]->height() / 2});
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 50'000'000'000);
    driver.click(sliders[0], {1, sliders[0]->height() / 2});
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 5'000'000'000);
    driver.click(sliders[1], {sliders[1]->width() / 2, sliders[1]->height() / 2});
    EXPECT_EQ(stage.storedPreferences.largeOpportunityDeltaBytes % 1'000'000'000, 0);
    EXPECT_NEAR(valueOf(opportunitySlider), 10.5, 0.6);
}

TEST_F(SettingsWindow, AThresholdOutOfRangeIsShownAtTheEndAndNotWritten) {
    stage.storedPreferences.lowSpaceThresholdBytes = 900'000'000'000;
    stage.storedPreferences.largeOpportunityDeltaBytes = 0;
    open();
    EXPECT_EQ(valueOf(lowSpaceSlider), 50);
    EXPECT_TRUE(says(threshold(lowSpaceThreshold, 50)));
    EXPECT_EQ(valueOf(opportunitySlider), 1);
    EXPECT_TRUE(says(threshold(opportunityThreshold, 1)));
    EXPECT_EQ(stage.preferencesSaved, 0);
    driver.tabTo(text(lowSpaceSlider), QAccessible::Slider);
    driver.key(Qt::Key_Right);
    EXPECT_EQ(stage.preferencesSaved, 0);
    driver.key(Qt::Key_Left);
    EXPECT_EQ(stage.storedPreferences, (NotificationPreferences{true, 49'000'000'000, true, 0, false}));
}

TEST_F(SettingsWindow, AThresholdBetweenTwoStepsIsRoundedDownInWordsAndGoesToTheNextStep) {
    stage.storedPreferences.lowSpaceThresholdBytes = 7'900'000'000;
    open();
    EXPECT_TRUE(says(threshold(lowSpaceThreshold, 7)));
    driver.tabTo(text(lowSpaceSlider), QAccessible::Slider);
    driver.key(Qt::Key_Right);
    EXPECT_EQ(stage.storedPreferences.lowSpaceThresholdBytes, 8'000'000'000);
}

// Updates.

TEST_F(SettingsWindow, TheButtonForUpdatesIsDisabledWhileItCannotCheck) {
    open("updates");
    driver.press(QAccessible::Button, text("menu.checkForUpdates"));
    EXPECT_EQ(stage.updater->checks, 1);
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("menu.checkForUpdates")));
    stage.updater->set(true, std::nullopt);
    stage.settle();
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, text("menu.checkForUpdates")));
}

TEST_F(SettingsWindow, TheBoxOfTheAutomaticChecksShowsWhatTheUpdaterSays) {
    open("updates");
    const QString box = text("settings.updates.automatic");
    EXPECT_TRUE(driver.isChecked(box));
    EXPECT_EQ(driver.find(QAccessible::CheckBox, box)->text(QAccessible::Description),
              text("settings.updates.automatic.description"));
    driver.press(QAccessible::CheckBox, box);
    EXPECT_FALSE(stage.updater->automatic);
    EXPECT_FALSE(driver.isChecked(box));
}

TEST_F(SettingsWindow, ANewerVersionIsToldWithAButtonForItsPage) {
    open("updates");
    const QString button = text("settings.updates.openPage");
    EXPECT_FALSE(driver.find(QAccessible::Button, button));
    stage.updater->set(true, NewerVersion{"1.4", "Finds more.", "https://example.org"});
    stage.settle();
    EXPECT_TRUE(says(QString::fromStdString(localized("settings.updates.available %@", "1.4"))));
    EXPECT_TRUE(says("Finds more."));
    driver.press(QAccessible::Button, button);
    EXPECT_EQ(stage.updater->pagesOpened, 1);
    stage.updater->set(true, NewerVersion{"1.4", "", ""});
    stage.settle();
    EXPECT_FALSE(driver.find(QAccessible::Button, button)) << "there is no page to open";
}

// About.

TEST_F(SettingsWindow, TellsOfTheProgramAndWritesToItsContact) {
    open("about");
    EXPECT_TRUE(says(QString::fromStdString(localized("settings.about.version %@", "0.1.0"))));
    EXPECT_TRUE(says(text("settings.about.copyright")));
    EXPECT_TRUE(says(text("settings.about.disclaimer")));
    driver.press(QAccessible::Link, text("settings.about.contact"));
    ASSERT_EQ(stage.linksOpened.size(), 1);
    EXPECT_EQ(stage.linksOpened.first().toString(), "mailto:hello@example.org");
}

TEST_F(SettingsWindow, TheAcknowledgementsLieInASheetThatHoldsTheKeyboard) {
    open("about");
    const QString name = text("settings.about.acknowledgements");
    driver.tabTo(name, QAccessible::Button);
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(driver.find(QAccessible::Dialog, name));
    EXPECT_TRUE(driver.find(QAccessible::Heading, "JSON for Modern C++"));
    EXPECT_EQ(driver.focusedName(), text("settings.about.done"));
    driver.key(Qt::Key_Tab);
    EXPECT_EQ(driver.focusedName(), text("settings.about.done"));
    driver.key(Qt::Key_End);
    EXPECT_TRUE(says("That's all there is to it!")) << "the end of the last notice";
    driver.key(Qt::Key_Escape);
    EXPECT_FALSE(driver.find(QAccessible::Dialog, name));
    EXPECT_TRUE(stage.settingsWindow()) << "Escape closes what lies on top alone";
    EXPECT_EQ(driver.focusedName(), name);
    driver.press(QAccessible::Button, name);
    driver.press(QAccessible::Button, text("settings.about.done"));
    EXPECT_FALSE(driver.find(QAccessible::Dialog, name));
}

TEST_F(SettingsWindow, AnotherPageIsNotHiddenBehindTheAcknowledgements) {
    open("about");
    const QString name = text("settings.about.acknowledgements");
    driver.press(QAccessible::Button, name);
    ASSERT_TRUE(driver.find(QAccessible::Dialog, name));
    // As the main window's menu does it.
    stage.settings.setTab("updates");
    stage.settle();
    EXPECT_FALSE(driver.find(QAccessible::Dialog, name));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("settings.updates.manual.section")));
    EXPECT_EQ(driver.focusedName(), text("settings.tab.updates"));
}

// Both languages, larger letters.

TEST_F(SettingsWindow, NoTextIsCutInEitherLanguageAtTwiceTheSize) {
    for (const Language language : {Language::english, Language::portuguese}) {
        for (const double size : {13.0, 26.0}) {
            setCurrentLanguage(language);
            WindowDriver each;
            each.stage.window.theme().setBaseSize(size);
            each.show();
            each.stage.updater->set(true, NewerVersion{"1.4", "Notes.", "https://example.org"});
            each.stage.settings.open();
            for (const char* tab : {"general", "updates", "about"}) {
                each.stage.settings.setTab(tab);
                each.stage.settle();
                EXPECT_EQ(each.textFaults().join('\n').toStdString(), "") << tab << " at " << size;
                each.window()->resize(each.window()->minimumSize());
                each.stage.settle();
                EXPECT_EQ(each.textFaults().join('\n').toStdString(), "") << tab << ", small, at " << size;
            }
        }
    }
}

TEST_F(SettingsWindow, FollowsTheLanguageWhileItStands) {
    open();
    setCurrentLanguage(Language::portuguese);
    stage.window.languageChanged();
    stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::CheckBox, text(lowSpaceToggle)));
    EXPECT_TRUE(says(threshold(lowSpaceThreshold, 10)));
    EXPECT_EQ(stage.settingsWindow()->title(), text("settings.title"));
}

TEST_F(SettingsWindow, FollowsTheTheme) {
    open();
    const QColor light = stage.settingsWindow()->color();
    stage.window.theme().setDark(true);
    stage.settle();
    EXPECT_NE(stage.settingsWindow()->color(), light);
    EXPECT_EQ(stage.settingsWindow()->color(), stage.window.theme().background());
}

} // namespace
} // namespace vesko
