#include "probes/SimulatorListings.h"

#include "support/Fixtures.h"
#include "support/PortugueseLocale.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using testing::fixture;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::UnorderedElementsAre;

const std::string devices = "/Users/someone/Library/Developer/CoreSimulator/Devices/";
const std::string runtimes = "/Users/someone/Library/Developer/CoreSimulator/Profiles/Runtimes/";

/// A listing of this one device.
std::string listing(const std::string& device) { return R"({"devices":{"runtime":[)" + device + "]}}"; }

TEST(SimulatorListings, DevicesOfEveryRuntimeAreRead) {
    EXPECT_THAT(
        parseSimctlDevices(fixture("simctl/devices.json")),
        Optional(UnorderedElementsAre(
            SimctlDevice{"9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D", "iPhone 15", true,
                         devices + "9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D/data"},
            SimctlDevice{"1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED", "iPhone 8", false,
                         devices + "1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED/data"},
            SimctlDevice{"7C9E6679-7425-40DE-944B-E07FC1F90AE7", "iPad de Ana", false, std::nullopt})));
}

TEST(SimulatorListings, NoDevicesAreAReadableListing) {
    EXPECT_THAT(parseSimctlDevices(fixture("simctl/devices-empty.json")), Optional(IsEmpty()));
    EXPECT_THAT(parseSimctlDevices(R"({"devices":{"runtime":[]},"other":1})"), Optional(IsEmpty()));
}

TEST(SimulatorListings, AMissingOrWrongKeyMakesTheWholeListingUnreadable) {
    const std::string good = R"({"udid":"A","name":"a","isAvailable":false})";
    EXPECT_TRUE(parseSimctlDevices(listing(good)));
    for (const char* bad : {
             R"({"name":"a","isAvailable":false})",
             R"({"udid":"A","isAvailable":false})",
             R"({"udid":"A","name":"a"})",
             R"({"udid":1,"name":"a","isAvailable":false})",
             R"({"udid":null,"name":"a","isAvailable":false})",
             R"({"udid":"A","name":["a"],"isAvailable":false})",
             R"({"udid":"A","name":"a","isAvailable":"false"})",
             R"({"udid":"A","name":"a","isAvailable":0})",
             R"({"udid":"A","name":"a","isAvailable":null})",
             R"({"udid":"A","name":"a","isAvailable":false,"dataPath":1})",
             R"({"udid":"A","name":"a","isAvailable":false,"dataPath":{}})",
             "1",
             "[]",
             "null",
             R"("A")",
         }) {
        EXPECT_EQ(parseSimctlDevices(listing(bad)), std::nullopt) << bad;
        EXPECT_EQ(parseSimctlDevices(listing(good + "," + bad)), std::nullopt) << bad;
    }
}

TEST(SimulatorListings, AnAbsentDataPathMayAlsoBeNull) {
    EXPECT_THAT(parseSimctlDevices(listing(R"({"udid":"A","name":"a","isAvailable":false,"dataPath":null})")),
                Optional(UnorderedElementsAre(SimctlDevice{"A", "a", false, std::nullopt})));
}

TEST(SimulatorListings, AnotherFormOfTheDocumentIsUnreadable) {
    for (const char* bad :
         {"", " ", "null", "[]", "{}", R"({"devices":null})", R"({"devices":[]})", R"({"devices":"x"})",
          R"({"devices":{"runtime":{}}})", R"({"devices":{"runtime":null}})", R"({"Devices":{}})",
          R"({"devices":{}} {"devices":{}})", "== Devices ==\n-- iOS 17.5 --\n"})
        EXPECT_EQ(parseSimctlDevices(bad), std::nullopt) << bad;
}

TEST(SimulatorListings, RuntimesGiveTheirBundlePathsWhereTheyHaveOne) {
    EXPECT_THAT(parseSimctlRuntimes(fixture("simctl/runtimes.json")),
                Optional(UnorderedElementsAre(runtimes + "iOS 17.5.simruntime")));
    EXPECT_THAT(parseSimctlRuntimes(R"({"runtimes":[{},{"name":1}]})"), Optional(IsEmpty()));
    EXPECT_THAT(parseSimctlRuntimes(R"({"runtimes":[]})"), Optional(IsEmpty()));
}

TEST(SimulatorListings, AWrongListOfRuntimesIsUnreadable) {
    for (const char* bad : {"", "{}", R"({"runtimes":{}})", R"({"runtimes":null})", R"({"runtimes":[1]})",
                            R"({"runtimes":[null]})", R"({"runtimes":[{"bundlePath":"/a"},[]]})",
                            R"({"runtimes":[{"bundlePath":"/a"},{"bundlePath":2}]})"})
        EXPECT_EQ(parseSimctlRuntimes(bad), std::nullopt) << bad;
}

TEST(SimulatorListings, HalfADocumentIsUnreadable) {
    const std::string whole = fixture("simctl/devices.json");
    const std::string other = fixture("simctl/runtimes.json");
    const auto end = [](const std::string& text) { return text.rfind('}'); };
    for (std::size_t length = 0; length <= end(whole); ++length)
        ASSERT_EQ(parseSimctlDevices(std::string_view(whole).substr(0, length)), std::nullopt) << length;
    for (std::size_t length = 0; length <= end(other); ++length)
        ASSERT_EQ(parseSimctlRuntimes(std::string_view(other).substr(0, length)), std::nullopt) << length;
}

TEST(SimulatorListings, BytesThatAreNoUtf8AreUnreadable) {
    EXPECT_EQ(parseSimctlDevices(listing("{\"udid\":\"A\",\"name\":\"caf\xe9\",\"isAvailable\":false}")),
              std::nullopt);
    EXPECT_EQ(parseSimctlRuntimes("{\"runtimes\":[{\"bundlePath\":\"\xff\"}]}"), std::nullopt);
    EXPECT_EQ(parseSimctlDevices(std::string_view("{\"devices\":{}}\0", 15)), std::nullopt);
}

TEST(SimulatorListings, APersonsLocaleChangesNothing) {
    const auto before = parseSimctlDevices(fixture("simctl/devices.json"));
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no pt_BR locale here";
    EXPECT_EQ(parseSimctlDevices(fixture("simctl/devices.json")), before);
}

TEST(SimulatorListings, AFloodIsUnreadableAndHarmless) {
    constexpr std::size_t length = 100'000'000;
    EXPECT_EQ(parseSimctlDevices(std::string(length, '[')), std::nullopt);
    EXPECT_EQ(parseSimctlDevices(R"({"devices":{"a":[)" + std::string(length, ' ')), std::nullopt);
    EXPECT_EQ(parseSimctlRuntimes(std::string(length, 'x')), std::nullopt);
    EXPECT_EQ(parseSimctlRuntimes("\"" + std::string(length, 'x') + "\""), std::nullopt);
}

} // namespace
} // namespace vesko
