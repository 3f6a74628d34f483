#include "platform/qt/Appcast.h"

#include "platform/qt/PlainNotes.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace vesko {
namespace {

std::string item(const std::string& inside) { return "<item>" + inside + "</item>"; }
std::string feed(const std::string& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:u="http://example.org/updates" xmlns:dc="http://purl.org/dc/elements/1.1/">
<channel><title>Vesko</title><link>https://example.org</link>)" +
           items + "</channel></rss>\n";
}
std::optional<NewerVersion> newest(const std::string& text) {
    return newestInAppcast(QByteArray::fromStdString(text));
}
std::string versionIn(const std::string& items) {
    const auto found = newest(feed(items));
    return found ? found->version : "none";
}

TEST(Appcast, ReadsVersionNotesAndPage) {
    const auto found =
        newest(feed(item(R"(<title>2.1</title><link> https://example.org/2.1?a=1&amp;b=2 </link>
        <u:version>2.1</u:version><pubDate>Sat, 21 Nov 2026 10:00:00 +0000</pubDate>
        <description><![CDATA[<h2>New</h2><ul><li>Faster &amp; calmer</li><li>Menos</li></ul>]]></description>
        <enclosure url="https://example.org/vesko.deb" length="10" type="application/octet-stream"/>)")));
    const NewerVersion wanted{
        .version = "2.1", .notes = "New\nFaster & calmer\nMenos", .page = "https://example.org/2.1?a=1&b=2"};
    EXPECT_EQ(found, wanted);
}

TEST(Appcast, TakesTheVersionWhereverTheFormHasIt) {
    EXPECT_EQ(versionIn(item(R"(<enclosure url="https://e.org/a" u:version="3.0"/>)")), "3.0");
    EXPECT_EQ(
        versionIn(item(R"(<enclosure url="https://e.org/a" u:version="300" u:shortVersionString="3.0"/>)")),
        "3.0");
    EXPECT_EQ(versionIn(item("<u:version>300</u:version><u:shortVersionString> 3.1 </u:shortVersionString>")),
              "3.1");
}

TEST(Appcast, TheNewestCountsWhereverItStands) {
    EXPECT_EQ(versionIn(item("<u:version>1.9</u:version>") + item("<u:version>1.10</u:version>") +
                        item("<u:version>1.2</u:version>")),
              "1.10");
}

TEST(Appcast, PassesOverWhatIsForOthersOrHasNoVersion) {
    EXPECT_EQ(versionIn(item(R"(<u:version>9</u:version><enclosure url="https://e.org/a" u:os="windows"/>)") +
                        item(R"(<u:version>8</u:version><u:channel>beta</u:channel>)") +
                        item("<title>7</title>") + item("<u:version>six</u:version>") +
                        item(R"(<u:version>5</u:version><enclosure url="https://e.org/a" u:os="linux"/>)")),
              "5");
    EXPECT_EQ(versionIn(item("<title>7</title>")), "none");
    EXPECT_EQ(versionIn(""), "none");
}

TEST(Appcast, ThePageIsTheFirstSafeLink) {
    const auto page = [](const std::string& inside) {
        return newest(feed(item("<u:version>2</u:version>" + inside))).value().page;
    };
    EXPECT_EQ(page("<link>https://e.org/p</link><u:releaseNotesLink>https://e.org/n</u:releaseNotesLink>"),
              "https://e.org/p");
    EXPECT_EQ(page("<link>http://e.org/p</link><u:releaseNotesLink>https://e.org/n</u:releaseNotesLink>"),
              "https://e.org/n");
    EXPECT_EQ(page(R"(<enclosure url="https://e.org/e"/>)"), "https://e.org/e");
    for (const char* bad : {"http://e.org", "file:///etc/passwd", "javascript:alert(1)", "https:///x",
                            "e.org", "", "https://bank.org@e.org/", "https://e.org:port/", "-h"})
        EXPECT_EQ(page(std::string("<link>") + bad + "</link>"), "") << bad;
}

TEST(Appcast, DamageAnywhereMakesAllOfItWorthNothing) {
    const std::string whole = feed(item("<u:version>2.0</u:version>"));
    ASSERT_TRUE(newest(whole));
    for (std::size_t length = 0; length + 1 < whole.size(); ++length)
        EXPECT_EQ(newest(whole.substr(0, length)), std::nullopt) << length;
    EXPECT_EQ(newest(whole + "<more/>"), std::nullopt);
    EXPECT_EQ(newest(feed(item("<u:version>2.0</u:version>") + "</item>")), std::nullopt);
    EXPECT_EQ(newest(feed(item("<u:version>2.0</u:version><x:y/>"))), std::nullopt);
    EXPECT_EQ(newest(feed(item("<u:version>2.0</u:version>\xFF"))), std::nullopt);
    EXPECT_EQ(newest(feed(item("<u:version>2.0</u:version>&unknown;"))), std::nullopt);
}

TEST(Appcast, WhatIsNoSuchFeedSaysNothing) {
    EXPECT_EQ(newest("<html><body>Please log in</body></html>"), std::nullopt);
    EXPECT_EQ(newest(R"({"version": "2.0"})"), std::nullopt);
    EXPECT_EQ(newest("<feed><channel><item><version>2</version></item></channel></feed>"), std::nullopt);
    EXPECT_EQ(newest("<rss><item><version>2</version></item></rss>"), std::nullopt);
}

TEST(Appcast, NothingExpands) {
    const std::string inside = item("<u:version>2.0</u:version><description>&c;</description>");
    std::string bomb = feed(inside);
    const std::string type =
        R"(<!DOCTYPE rss [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;"><!ENTITY c "&b;&b;&b;&b;">]>)";
    bomb.insert(bomb.find("<rss"), type);
    EXPECT_EQ(newest(bomb), std::nullopt);
    std::string plain = feed(item("<u:version>2.0</u:version>"));
    plain.insert(plain.find("<rss"), R"(<!DOCTYPE rss SYSTEM "file:///etc/passwd">)");
    EXPECT_EQ(newest(plain), std::nullopt);
}

TEST(Appcast, DepthIsBounded) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<a>";
    EXPECT_EQ(newest(deep), std::nullopt);
    std::string within;
    for (int i = 0; i < 28; ++i) within = "<a>" + within + "</a>";
    EXPECT_EQ(versionIn(item("<u:version>2.0</u:version>" + within)), "2.0");
    for (int i = 0; i < 5; ++i) within = "<a>" + within + "</a>";
    EXPECT_EQ(versionIn(item("<u:version>2.0</u:version>" + within)), "none");
}

std::string attributes(int count) {
    std::string made;
    for (int i = 0; i < count; ++i) made += " a" + std::to_string(i) + (i % 2 == 0 ? "='>'" : "=\"'\"");
    return made;
}

TEST(Appcast, ATagWithMoreAttributesThanAnyFeedNeedsMakesAllOfItWorthNothing) {
    const auto withTag = [](const std::string& tag) { return item("<u:version>2.0</u:version>" + tag); };
    EXPECT_EQ(versionIn(withTag("<x" + attributes(64) + "/>")), "2.0");
    EXPECT_EQ(versionIn(withTag("<x" + attributes(65) + "/>")), "none");
    EXPECT_EQ(versionIn(withTag("<x" + attributes(65) + "></x>")), "none");
    EXPECT_EQ(versionIn(withTag("<x" + attributes(100'000) + "/>")), "none");
    EXPECT_EQ(versionIn(withTag("<!-- ' --><x" + attributes(65) + "/><!-- ' -->")), "none");
    EXPECT_EQ(versionIn(withTag("<?x '?><x" + attributes(65) + "/>")), "none");
    EXPECT_EQ(versionIn(withTag("<y><![CDATA[']]></y><x" + attributes(65) + "/>")), "none");
    EXPECT_EQ(versionIn(withTag("it's<x" + attributes(65) + "/>")), "none");
}

TEST(Appcast, WhatLooksLikeAttributesInNotesIsNoTag) {
    const std::string many = "<a" + attributes(1000) + ">";
    std::string escaped = attributes(1000);
    for (std::size_t at = 0; (at = escaped.find('>', at)) != std::string::npos;)
        escaped.replace(at, 1, "&gt;");
    for (const std::string& notes :
         {"<![CDATA[" + many + "]]>", "<![CDATA[<!DOCTYPE html>" + many + "]]>", "&lt;a" + escaped + "&gt;"})
        EXPECT_EQ(versionIn(item("<u:version>2.0</u:version><description>" + notes + "</description>")),
                  "2.0");
    for (const std::string& beside : {"<!--" + many + "-->", "<?x " + many + "?>"})
        EXPECT_EQ(versionIn(item("<u:version>2.0</u:version>" + beside)), "2.0");
}

TEST(Appcast, IsReadInTheEncodingThatItSaysAndBoundedInThatOne) {
    const auto inEncoding = [](const std::string& name, const QByteArray& inside) {
        return "<?xml version='1.0' encoding='" + QByteArray::fromStdString(name) +
               "'?><rss><channel><item><version>2.0</version><description>" + inside +
               "</description></item></channel></rss>";
    };
    const auto notes = [](const QByteArray& feed) {
        return newestInAppcast(feed).value_or(NewerVersion{"", "nothing", ""}).notes;
    };
    EXPECT_EQ(notes(inEncoding("utf-8", "caf\xC3\xA9")), "café");
    EXPECT_EQ(notes("\xEF\xBB\xBF" + inEncoding("utf-8", "caf\xC3\xA9")), "café");
    EXPECT_EQ(notes(inEncoding("ISO-8859-1", "caf\xE9")), "café");
    EXPECT_EQ(notes(inEncoding("utf-8", "caf\xE9")), "nothing");
    EXPECT_EQ(notes(inEncoding("no-such-encoding", "cafe")), "nothing");
    const auto inUtf16 = [&](const QByteArray& inside) {
        const QString text = QString::fromUtf8(inEncoding("utf-16", inside));
        return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    };
    const QByteArray many = "<x" + QByteArray::fromStdString(attributes(65)) + "/>";
    EXPECT_EQ(notes(inUtf16("caf\xC3\xA9")), "café");
    EXPECT_EQ(notes(inUtf16(many)), "nothing");
    // An encoding in which a tag does not look like one.
    QByteArray hidden = many;
    hidden.replace("=", "+AD0-").replace("'", "+ACc-").replace("\"", "+ACI-").replace("<", "+ADw-");
    EXPECT_EQ(notes(inEncoding("utf-7", hidden)), "nothing");
}

TEST(PlainNotes, AreTextWithoutMarkup) {
    EXPECT_EQ(plainNotes(QStringLiteral("a<br>b<p class='x'>c</p>  d\te<!-- f --><b>g</b>")),
              QStringLiteral("a\nb\nc\nd eg"));
    EXPECT_EQ(plainNotes(QStringLiteral("1 < 2 &amp;&#33;&#x41;&lt;b&gt;&#0;&#xD800;&what;&")),
              QStringLiteral("1 < 2 &!A<b>&#0;&#xD800;&what;&"));
    EXPECT_EQ(plainNotes(QStringLiteral("one\n\n\ntwo\u0007\u200E")), QStringLiteral("one\ntwo"));
    EXPECT_EQ(plainNotes(QStringLiteral("<unclosed")), QStringLiteral("<unclosed"));
    EXPECT_EQ(plainNotes(QString()), QString());
}

TEST(PlainNotes, AreBounded) {
    EXPECT_EQ(plainNotes(QString(1'000'000, u'a')).size(), 4000);
    EXPECT_LE(plainNotes(QString(500'000, u'<')).size(), 4000);
    EXPECT_LE(plainNotes(QString(500'000, u'&')).size(), 4000);
    EXPECT_LE(plainNotes(QStringLiteral("<b>").repeated(300'000)).size(), 4000);
}

} // namespace
} // namespace vesko
