#include "Catalog.h"

#include <gmock/gmock.h>
#include <string>

namespace vesko::catalog {
namespace {

using ::testing::HasSubstr;

std::string unit(const std::string& value) {
    return R"({"stringUnit":{"state":"translated","value":")" + value + R"("}})";
}

std::string plural(const std::string& one, const std::string& other) {
    return R"({"variations":{"plural":{"one":)" + unit(one) + R"(,"other":)" + unit(other) + "}}}";
}

std::string catalogOf(const std::string& strings) {
    return R"({"sourceLanguage":"en","version":"1.0","strings":{)" + strings + "}}";
}

std::string entryOf(const std::string& key, const std::string& english, const std::string& portuguese) {
    return "\"" + key + R"(":{"localizations":{"en":)" + english + R"(,"pt-BR":)" + portuguese + "}}";
}

/// Why the catalog is refused; empty when it is taken.
std::string refusal(const std::string& json) {
    try {
        readCatalog(json);
        return {};
    } catch (const CatalogError& error) {
        return error.what();
    }
}

std::string refusalOf(const std::string& key, const std::string& english, const std::string& portuguese) {
    return refusal(catalogOf(entryOf(key, english, portuguese)));
}

TEST(CatalogReader, TakesTextsPluralsAndSubstitutions) {
    const std::string substituted =
        R"({"stringUnit":{"state":"translated","value":"%#@files@ of %2$@"},"substitutions":{"files":)"
        R"({"argNum":1,"formatSpecifier":"lld","variations":{"plural":{"one":)" +
        unit("%arg file") + R"(,"other":)" + unit("%arg files") + "}}}}}";
    const Catalog catalog = readCatalog(
        catalogOf(entryOf("b", unit("text"), unit("texto")) + "," +
                  entryOf("a", plural("%lld item", "%lld items"), plural("%lld item", "%lld itens")) + "," +
                  entryOf("c %1$lld %2$@", substituted, substituted)));
    ASSERT_EQ(catalog.size(), 3U);
    EXPECT_EQ(catalog.begin()->first, "a");
    EXPECT_EQ(catalog.at("a").portuguese.form.other, "%lld itens");
    EXPECT_EQ(catalog.at("b").english.form.one, "");
    EXPECT_EQ(catalog.at("c %1$lld %2$@").english.substitutions.at("files").argument, 1);
}

TEST(CatalogReader, RefusesAKeyThatLacksALanguage) {
    EXPECT_THAT(refusal(catalogOf(R"("a":{"localizations":{"en":)" + unit("text") + "}}")),
                HasSubstr("a: \"pt-BR\""));
    EXPECT_THAT(refusal(catalogOf(R"("a":{"localizations":{"pt-BR":)" + unit("texto") + "}}")),
                HasSubstr("\"en\""));
}

TEST(CatalogReader, RefusesATextThatIsEmptyOrNotMarkedAsTranslated) {
    EXPECT_THAT(refusalOf("a", unit(""), unit("texto")), HasSubstr("empty"));
    EXPECT_THAT(refusalOf("a", unit("text"), R"({"stringUnit":{"state":"new","value":"text"}})"),
                HasSubstr("not marked as translated"));
}

TEST(CatalogReader, RefusesLanguagesWithDifferentPlaceholders) {
    EXPECT_THAT(refusalOf("a", unit("%@ left"), unit("restam")), HasSubstr("two languages"));
    EXPECT_THAT(refusalOf("a", unit("%@ left"), unit("%lld restam")), HasSubstr("two languages"));
    EXPECT_THAT(refusalOf("a", unit("%1$@ %2$lld"), unit("%2$@ %1$lld")), HasSubstr("two languages"));
    EXPECT_EQ(refusalOf("a", unit("%1$@ %2$@"), unit("%2$@ %1$@")), "");
}

TEST(CatalogReader, RefusesOtherPlaceholdersThanTheKeyNames) {
    EXPECT_THAT(refusalOf("a %@", unit("text"), unit("texto")), HasSubstr("than the key names"));
    EXPECT_THAT(refusalOf("a %1$@ %2$@", unit("%1$@"), unit("%1$@")), HasSubstr("than the key names"));
    EXPECT_EQ(refusalOf("a %1$@ %2$lld", unit("%2$lld of %1$@"), unit("%1$@: %2$lld")), "");
}

TEST(CatalogReader, RefusesAPluralWithoutItsTwoForms) {
    const std::string half = R"({"variations":{"plural":{"other":)" + unit("%lld items") + "}}}";
    EXPECT_THAT(refusalOf("a %lld", half, half), HasSubstr("\"one\" is missing"));
    EXPECT_THAT(refusalOf("a %lld", plural("an item", "%lld items"), plural("%lld", "%lld")),
                HasSubstr("two forms"));
    EXPECT_THAT(refusalOf("a", plural("item", "items"), plural("item", "itens")),
                HasSubstr("without a number"));
}

TEST(CatalogReader, RefusesASubstitutionThatIsMissingOrUnused) {
    EXPECT_THAT(refusalOf("a", unit("%#@files@"), unit("%#@files@")), HasSubstr("no substitution"));
    const std::string unused =
        R"({"stringUnit":{"state":"translated","value":"%lld"},"substitutions":{"files":)"
        R"({"argNum":1,"formatSpecifier":"lld","variations":{"plural":{"one":)" +
        unit("%arg file") + R"(,"other":)" + unit("%arg files") + "}}}}}";
    EXPECT_THAT(refusalOf("a %lld", unused, unused), HasSubstr("is not used"));
}

TEST(CatalogReader, RefusesAPercentSignThatIsNoPlaceholder) {
    EXPECT_THAT(refusalOf("a", unit("100 % sure"), unit("100 %% certo")), HasSubstr("no placeholder"));
    EXPECT_EQ(refusalOf("a", unit("100 %% sure"), unit("100 %% certo")), "");
}

TEST(CatalogReader, RefusesAKeyThatStandsThereTwice) {
    EXPECT_THAT(
        refusal(catalogOf(entryOf("a", unit("x"), unit("x")) + "," + entryOf("a", unit("y"), unit("y")))),
        HasSubstr("a: the key stands there twice"));
}

TEST(CatalogReader, RefusesWhatIsNoCatalog) {
    EXPECT_NE(refusal(""), "");
    EXPECT_NE(refusal("[]"), "");
    EXPECT_NE(refusal("{"), "");
    EXPECT_THAT(refusal(R"({"sourceLanguage":"pt-BR","strings":{}})"), HasSubstr("source language"));
    EXPECT_THAT(refusal(R"({"sourceLanguage":"en","strings":[]})"), HasSubstr("no object"));
    EXPECT_THAT(refusal(R"({"sourceLanguage":"en","strings":{},"more":1})"), HasSubstr("not known"));
}

TEST(CatalogReader, TheTableHoldsEveryByteOfAText) {
    const Catalog catalog = readCatalog(catalogOf(entryOf("a", unit("\\\"ção\\\" \\\\?\\n9"), unit("x"))));
    EXPECT_THAT(tableSource(catalog), HasSubstr(R"("\042\303\247\303\243o\042 \134\077\0129"sv)"));
}

} // namespace
} // namespace vesko::catalog
