// The sheet that a deletion is confirmed in.
#include "ui/AWindow.h"
#include <QFont>
#include <QFontInfo>
#include <QQuickItem>
#include <QTextCursor>
#include <QTextDocument>
#include <filesystem>

namespace vesko {
namespace {

using namespace testing;

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

} // namespace
} // namespace vesko
