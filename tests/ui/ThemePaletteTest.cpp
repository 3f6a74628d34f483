#include "ui/ThemePalette.h"
#include "ui/Theme.h"
#include <QQmlEngine>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace vesko {
namespace {

constexpr double readable = 4.5;

class PaletteContrast : public testing::TestWithParam<const ThemePalette*> {
protected:
    void expectReadable(const char* what, const QColor& ink, const QColor& ground) const {
        EXPECT_GE(contrast(ink, ground), readable)
            << what << ": " << ink.name().toStdString() << " on " << ground.name().toStdString();
    }
};

TEST_P(PaletteContrast, EveryInkIsReadableOnEveryGround) {
    const ThemePalette& p = *GetParam();
    const std::vector<std::pair<const char*, QColor>> inks{
        {"text", p.text},     {"muted", p.muted},    {"purple", p.purple}, {"cyan", p.cyan},
        {"green", p.green},   {"pink", p.pink},      {"slate", p.slate},   {"warning", p.warning},
        {"danger", p.danger}, {"success", p.success}};
    for (const auto& [name, ink] : inks) {
        for (const QColor& ground : {p.background, p.surface, p.hover}) expectReadable(name, ink, ground);
    }
}

TEST_P(PaletteContrast, EveryLabelIsReadableOnItsOwnGround) {
    const ThemePalette& p = *GetParam();
    expectReadable("an open row's text", p.text, p.chosen);
    expectReadable("an open row's muted text", p.muted, p.chosen);
    expectReadable("prominent", p.onProminent, p.prominent);
    expectReadable("destructive", p.onDestructive, p.destructive);
    expectReadable("safe", p.safe, p.safeGround);
    expectReadable("review", p.review, p.reviewGround);
    expectReadable("risk", p.risk, p.riskGround);
}

constexpr const char* paletteNames[]{"Light", "Dark", "LightContrast", "DarkContrast"};

INSTANTIATE_TEST_SUITE_P(Themes, PaletteContrast,
                         testing::Values(&lightPalette(), &darkPalette(), &lightContrastPalette(),
                                         &darkContrastPalette()),
                         [](const auto& each) { return paletteNames[each.index]; });

TEST(ThemePalette, WithHighContrastLinesAndMutedTextStandOut) {
    for (const ThemePalette* palette : {&lightContrastPalette(), &darkContrastPalette()}) {
        for (const QColor& ground :
             {palette->background, palette->surface, palette->hover, palette->chosen}) {
            EXPECT_GE(contrast(palette->border, ground), 3.0) << ground.name().toStdString();
            EXPECT_GE(contrast(palette->muted, ground), 7.0) << ground.name().toStdString();
        }
    }
    EXPECT_LT(contrast(lightPalette().border, lightPalette().background), 3.0);
}

TEST(Theme, HighContrastIsATableOfItsOwnInBothSchemesAndIsTold) {
    Theme theme;
    int told = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++told; });
    theme.setHighContrast(true);
    theme.setHighContrast(true);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(theme.border(), lightContrastPalette().border);
    theme.setDark(true);
    EXPECT_EQ(theme.border(), darkContrastPalette().border);
    theme.setHighContrast(false);
    EXPECT_EQ(theme.border(), darkPalette().border);
}

TEST(ThemePalette, ContrastIsThatOfTheGuidelines) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21.0, 0.001);
    EXPECT_NEAR(contrast(Qt::white, Qt::white), 1.0, 0.001);
    EXPECT_NEAR(contrast(QColor(0x777777), Qt::white), 4.478, 0.001);
}

TEST(Theme, DarkIsTheOtherTableAndIsTold) {
    Theme theme;
    int told = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++told; });
    EXPECT_EQ(theme.background(), QColor(0xF5F5F8));
    theme.setDark(true);
    theme.setDark(true);
    EXPECT_EQ(theme.background(), QColor(0x16161C));
    EXPECT_EQ(told, 1);
}

TEST(Theme, TextFollowsTheBaseSizeAndRowsGrowWithIt) {
    Theme theme;
    theme.setBaseSize(14);
    EXPECT_EQ(theme.caption(), 12);
    EXPECT_EQ(theme.body(), 14);
    EXPECT_EQ(theme.title(), 22);
    EXPECT_EQ(theme.figure(), 34);
    EXPECT_EQ(theme.groupHeight(), 64);
    EXPECT_EQ(theme.itemHeight(), 40);
    theme.setBaseSize(28);
    EXPECT_GT(theme.groupHeight(), 2 * theme.body() + theme.caption());
    EXPECT_GT(theme.itemHeight(), theme.body() * 2);
}

TEST(Theme, NothingMovesWithReducedMotion) {
    Theme theme;
    EXPECT_EQ(theme.motion(), 160);
    theme.setReducedMotion(true);
    EXPECT_EQ(theme.motion(), 0);
}

} // namespace
} // namespace vesko
