#include "ui/Acknowledgement.h"
#include "ui/AboutModel.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(Acknowledgement, IsANameAndParagraphsWithoutThePagesLineBreaks) {
    EXPECT_EQ(
        acknowledgementFromText("A library\n\nCopyright someone\n\nFirst line\n  second line.\n\n\nEnd.\n"),
        (Acknowledgement{"A library", {"Copyright someone", "First line second line.", "End."}}));
    EXPECT_EQ(acknowledgementFromText("\nName\nText"), (Acknowledgement{"Name", {"Text"}}));
    EXPECT_EQ(acknowledgementFromText(""), Acknowledgement());
}

QString noticeOf(const QString& name) {
    for (const Acknowledgement& each : acknowledgements()) {
        if (each.name == name) return each.paragraphs.join('\n');
    }
    return {};
}

TEST(Acknowledgement, EveryComponentWithCodeInTheProgramHasItsNoticeInFull) {
    for (const char* name : {"JSON for Modern C++", "ICU"}) {
        const QString notice = noticeOf(name);
        EXPECT_TRUE(notice.startsWith("Copyright ©")) << name;
        EXPECT_TRUE(notice.contains("Permission is hereby granted, free of charge")) << name;
        EXPECT_TRUE(notice.contains("WITHOUT WARRANTY OF ANY KIND")) << name;
        EXPECT_TRUE(notice.endsWith("OTHER DEALINGS IN THE SOFTWARE.")) << name;
    }
    const QString qt = noticeOf("Qt");
    EXPECT_TRUE(qt.startsWith("Copyright ©"));
    EXPECT_TRUE(qt.contains("GNU LESSER GENERAL PUBLIC LICENSE Version 3"));
    EXPECT_TRUE(qt.contains("GNU GENERAL PUBLIC LICENSE Version 3"));
    EXPECT_TRUE(qt.contains("END OF TERMS AND CONDITIONS"));
    const QString libplist = noticeOf("libplist");
    EXPECT_TRUE(libplist.startsWith("Copyright ©"));
    EXPECT_TRUE(libplist.contains("GNU LESSER GENERAL PUBLIC LICENSE Version 2.1"));
    EXPECT_TRUE(libplist.contains("END OF TERMS AND CONDITIONS"));
}

TEST(Acknowledgement, EachIsShownAsItsNameAndItsParagraphs) {
    QStringList names;
    int paragraphs = 0;
    const QVariantList rows = AboutModel({}).acknowledgementRows();
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_TRUE(rows.first().toMap()["isName"].toBool());
    for (const QVariant& each : rows) {
        const QVariantMap row = each.toMap();
        EXPECT_FALSE(row["text"].toString().isEmpty());
        if (row["isName"].toBool())
            names << row["text"].toString();
        else
            ++paragraphs;
    }
    EXPECT_EQ(names, (QStringList{"JSON for Modern C++", "Qt", "ICU", "libplist"}));
    EXPECT_GT(paragraphs, 100);
}

} // namespace
} // namespace vesko
