#include "core/BundleIdentifier.h"

#include "core/InstalledApplications.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include <cstdlib>
#include <gmock/gmock.h>
#include <plist/plist.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScopedEnvironment;
using testing::TempTree;
using ::testing::UnorderedElementsAre;

std::string xmlWith(const std::string& entries) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>)" +
           entries + "</dict></plist>\n";
}

std::string xmlFor(const std::string& identifier) {
    return xmlWith("<key>CFBundleName</key><string>Tool</string><key>CFBundleIdentifier</key><string>" +
                   identifier + "</string>");
}

std::string binaryFor(const char* identifier) {
    const plist_t list = plist_new_dict();
    plist_dict_set_item(list, "CFBundleIdentifier", plist_new_string(identifier));
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(list, &bytes, &length);
    std::string copy(bytes, length);
    std::free(bytes);
    plist_free(list);
    return copy;
}

TEST(BundleIdentifier, IsReadFromXml) {
    EXPECT_EQ(bundleIdentifierFromPropertyList(xmlFor("com.example.tool")), "com.example.tool");
}

TEST(BundleIdentifier, IsReadFromBinary) {
    const std::string bytes = binaryFor("com.example.binary");
    ASSERT_TRUE(bytes.starts_with("bplist"));
    EXPECT_EQ(bundleIdentifierFromPropertyList(bytes), "com.example.binary");
}

TEST(BundleIdentifier, AnythingElseGivesNothing) {
    EXPECT_FALSE(bundleIdentifierFromPropertyList(""));
    EXPECT_FALSE(bundleIdentifierFromPropertyList("not a list"));
    EXPECT_FALSE(bundleIdentifierFromPropertyList("<plist"));
    EXPECT_FALSE(bundleIdentifierFromPropertyList("<plist><array/></plist>"));
    EXPECT_FALSE(bundleIdentifierFromPropertyList(xmlWith("")));
    EXPECT_FALSE(
        bundleIdentifierFromPropertyList(xmlWith("<key>CFBundleIdentifier</key><integer>4</integer>")));
    EXPECT_FALSE(bundleIdentifierFromPropertyList("bplist00"));
}

TEST(BundleIdentifier, ADamagedBinaryListGivesNothingWhereverItIsCut) {
    const std::string whole = binaryFor("com.example.binary");
    for (std::size_t length = 6; length < whole.size(); ++length)
        EXPECT_FALSE(bundleIdentifierFromPropertyList(whole.substr(0, length))) << length;
}

TEST(BundleIdentifier, IsReadFromTheFolderContents) {
    const TempTree tree;
    tree.file("Tool.app/Contents/Info.plist", xmlFor("com.example.tool"));
    tree.file("Flat.app/Info.plist", xmlFor("com.example.flat"));
    EXPECT_EQ(bundleIdentifier(tree.url("Tool.app")), "com.example.tool");
    EXPECT_FALSE(bundleIdentifier(tree.url("Flat.app")));
    EXPECT_FALSE(bundleIdentifier(tree.url("Missing.app")));
}

TEST(InstalledApplications, AreThoseDirectlyInTheRoots) {
    const TempTree tree;
    tree.file("one/A.app/Contents/Info.plist", xmlFor("com.example.a"));
    tree.file("one/B.app/Contents/Info.plist", binaryFor("com.example.b"));
    tree.file("two/C.app/Contents/Info.plist", xmlFor("com.example.c"));
    tree.file("two/Again.app/Contents/Info.plist", xmlFor("com.example.a"));
    EXPECT_THAT(installedBundleIDs({tree.url("one"), tree.url("missing"), tree.url("two")}),
                UnorderedElementsAre("com.example.a", "com.example.b", "com.example.c"));
}

TEST(InstalledApplications, AnApplicationInASubfolderIsNotSeen) {
    const TempTree tree;
    tree.file("one/Utilities/Deep.app/Contents/Info.plist", xmlFor("com.example.deep"));
    EXPECT_THAT(installedBundleIDs({tree.url("one")}), IsEmpty());
}

TEST(InstalledApplications, OtherExtensionsHiddenEntriesAndDamagedOnesAreNotSeen) {
    const TempTree tree;
    tree.file("one/Upper.APP/Contents/Info.plist", xmlFor("com.example.upper"));
    tree.file("one/.Hidden.app/Contents/Info.plist", xmlFor("com.example.hidden"));
    tree.file("one/Tool.bundle/Contents/Info.plist", xmlFor("com.example.bundle"));
    tree.file("one/Damaged.app/Contents/Info.plist", "<plist");
    tree.file("one/File.app", "no folder");
    EXPECT_THAT(installedBundleIDs({tree.url("one")}), IsEmpty());
}

TEST(InstalledApplications, TheRootsAreTheSystemsAndTheOneInTheHomeOfTheProcess) {
    const ScopedEnvironment home("HOME", "/home/of-the-test");
    EXPECT_THAT(applicationRoots(),
                ElementsAre(FileURL("/Applications"), FileURL("/home/of-the-test/Applications")));
}

} // namespace
} // namespace vesko
