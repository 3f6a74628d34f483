#include "probes/SimulatorProbes.h"

#include "core/CatalogRows.h"
#include "core/DiskSizeCalculator.h"
#include "support/Fixtures.h"
#include "support/FoundItems.h"
#include "support/LanguageScope.h"
#include "support/PortugueseLocale.h"
#include "support/ToolProbeTest.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::fixture;
using ::testing::IsEmpty;
using testing::itemsOf;
using testing::LanguageScope;
using testing::ScriptedSizes;
using ::testing::UnorderedElementsAre;
using Command = testing::FakeRunner::Command;

const Command listDevices{"/usr/bin/xcrun", "simctl", "list", "devices", "-j"};
const Command listRuntimes{"/usr/bin/xcrun", "simctl", "list", "runtimes", "-j"};
const std::string deviceRoot = "Library/Developer/CoreSimulator/Devices";
const std::string runtimeRoot = "Library/Developer/CoreSimulator/Profiles/Runtimes";

class SimulatorProbesTest : public testing::ToolProbeTest {
protected:
    ProbeResult all() { return run(SimulatorProbe(rowMetadata("xcode.simulators.all"), false)); }
    ProbeResult unavailable() {
        return run(SimulatorProbe(rowMetadata("xcode.simulators.unavailable"), true));
    }
    ProbeResult runtimes() { return run(SimulatorRuntimeProbe(rowMetadata("xcode.simulator.runtime"))); }

    /// The fixture with its home folder put in the place of this test's.
    std::string here(const std::string& name) const {
        std::string text = fixture(name);
        const std::string theirs = R"(\/Users\/someone)";
        for (std::size_t at = 0; (at = text.find(theirs, at)) != std::string::npos;)
            text.replace(at, theirs.size(), tree.root().path());
        return text;
    }
    void devices(const std::string& list) { script.on(listDevices, R"({"devices":{"a":[)" + list + "]}}"); }
    static ScannableItem device(const std::string& udid, const std::string& path) {
        ScannableItem made = testing::item(path, 1000);
        made.enrichmentKey = {"simulator:" + udid};
        return made;
    }
};

// Devices.

TEST_F(SimulatorProbesTest, EveryDeviceOfEveryRuntimeIsAnItem) {
    script.on(listDevices, here("simctl/devices.json"));
    const ProbeResult result = all();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "xcode.simulators.all");
    EXPECT_THAT(result.errors, IsEmpty());
    const auto folder = [&](const std::string& udid) { return tree.path(deviceRoot + "/" + udid); };
    EXPECT_THAT(
        itemsOf(result),
        UnorderedElementsAre(
            device("9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D", folder("9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D")),
            device("1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED", folder("1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED")),
            device("7C9E6679-7425-40DE-944B-E07FC1F90AE7", folder("7C9E6679-7425-40DE-944B-E07FC1F90AE7"))));
    EXPECT_THAT(runner->commands(), ElementsAre(listDevices));
}

TEST_F(SimulatorProbesTest, AvailableDevicesAreLeftOutWhereOnlyTheOthersCount) {
    script.on(listDevices, here("simctl/devices.json"));
    const ProbeResult result = unavailable();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "xcode.simulators.unavailable");
    std::vector<std::string> keys;
    for (const ScannableItem& item : itemsOf(result)) keys.push_back(item.enrichmentKey.rawValue);
    EXPECT_THAT(keys, UnorderedElementsAre("simulator:1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED",
                                           "simulator:7C9E6679-7425-40DE-944B-E07FC1F90AE7"));
}

TEST_F(SimulatorProbesTest, ADeviceWithoutADataPathIsLookedForAtHome) {
    devices(R"({"udid":"AB-12","name":"n","isAvailable":false})");
    EXPECT_EQ(itemsOf(unavailable()), (ItemList{device("AB-12", tree.path(deviceRoot + "/AB-12"))}));
}

TEST_F(SimulatorProbesTest, ADataPathIsAlwaysCutByOneComponent) {
    devices(R"({"udid":"A","name":"n","isAvailable":true,"dataPath":"/x/A/data"},)"
            R"({"udid":"B","name":"n","isAvailable":true,"dataPath":"/x/B"},)"
            R"({"udid":"C","name":"n","isAvailable":true,"dataPath":"/x/C/odd name/"})");
    EXPECT_THAT(itemsOf(all()),
                UnorderedElementsAre(device("A", "/x/A"), device("B", "/x"), device("C", "/x/C")));
}

TEST_F(SimulatorProbesTest, DevicesAreMeasuredFollowingLinks) {
    devices(R"({"udid":"A","name":"n","isAvailable":true,"dataPath":"/x/A/data"})");
    all();
    EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{"/x/A", true, false}));
}

TEST_F(SimulatorProbesTest, ADeviceThatNoLongerHasAFolderDoesNotShow) {
    tree.file(deviceRoot + "/HERE/data/db", std::string(50'000, 'x'));
    devices(R"({"udid":"HERE","name":"n","isAvailable":true},{"udid":"GONE","name":"n","isAvailable":true})");
    const ProbeResult result = run(SimulatorProbe(rowMetadata("xcode.simulators.all"), false),
                                   std::make_shared<DiskSizeCalculator>());
    ASSERT_TRUE(result.group);
    EXPECT_THAT(testing::paths(itemsOf(result)), ElementsAre(tree.path(deviceRoot + "/HERE")));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(SimulatorProbesTest, NoDevicesAreNoGroupAndNoError) {
    script.on(listDevices, fixture("simctl/devices-empty.json"));
    EXPECT_EQ(all(), ProbeResult());
    EXPECT_EQ(unavailable(), ProbeResult());
}

TEST_F(SimulatorProbesTest, AToolThatIsMissingOrFailsIsOneError) {
    const auto isOneError = [&] {
        {
            const LanguageScope english(Language::english);
            const ProbeResult result = all();
            EXPECT_FALSE(result.group);
            EXPECT_THAT(
                result.errors,
                ElementsAre("The simulators could not be listed, because Xcode’s tool did not answer."));
        }
        const LanguageScope portuguese(Language::portuguese);
        EXPECT_THAT(unavailable().errors, ElementsAre("Não foi possível listar os simuladores, porque a "
                                                      "ferramenta do Xcode não respondeu."));
    };
    isOneError();
    script.failing(listDevices, 72, fixture("simctl/devices.json"));
    isOneError();
    script.failing(listDevices, 9);
    isOneError();
}

TEST_F(SimulatorProbesTest, AnUnreadableListingIsOneError) {
    for (const std::string& printed :
         {std::string(), std::string("garbage"), std::string("\xff"), fixture("simctl/runtimes.json"),
          fixture("simctl/devices.json").substr(0, 700)}) {
        script.on(listDevices, printed);
        {
            const LanguageScope english(Language::english);
            const ProbeResult result = all();
            EXPECT_FALSE(result.group);
            EXPECT_THAT(result.errors, ElementsAre("The list of simulators could not be read."));
        }
        const LanguageScope portuguese(Language::portuguese);
        EXPECT_THAT(unavailable().errors, ElementsAre("Não foi possível ler a lista de simuladores."));
    }
}

TEST_F(SimulatorProbesTest, OneDeviceWithoutItsAvailabilityMakesTheListingUnreadable) {
    const LanguageScope english(Language::english);
    devices(R"({"udid":"A","name":"n","isAvailable":true},{"udid":"B","name":"n"})");
    const ProbeResult result = all();
    EXPECT_FALSE(result.group);
    EXPECT_THAT(result.errors, ElementsAre("The list of simulators could not be read."));
}

TEST_F(SimulatorProbesTest, APersonsLocaleChangesNothing) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no pt_BR locale here";
    script.on(listDevices, here("simctl/devices.json"));
    EXPECT_EQ(itemsOf(all()).size(), 3U);
}

// Runtimes.

TEST_F(SimulatorProbesTest, RegisteredRuntimesAreLeftOut) {
    tree.folder(runtimeRoot + "/iOS 17.5.simruntime");
    tree.folder(runtimeRoot + "/iOS 15.0.simruntime");
    tree.folder(runtimeRoot + "/.hidden.simruntime");
    script.on(listRuntimes, here("simctl/runtimes.json"));
    const ProbeResult result = runtimes();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "xcode.simulator.runtime");
    EXPECT_THAT(itemsOf(result),
                UnorderedElementsAre(testing::item(tree.path(runtimeRoot + "/iOS 15.0.simruntime"), 1000),
                                     testing::item(tree.path(runtimeRoot + "/.hidden.simruntime"), 1000)));
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(runner->commands(), ElementsAre(listRuntimes));
}

TEST_F(SimulatorProbesTest, ABundlePathWithATrailingSlashIsTheSamePath) {
    tree.folder(runtimeRoot + "/known");
    script.on(listRuntimes, R"({"runtimes":[{"bundlePath":")" + tree.path(runtimeRoot + "/known") + "/\"}]}");
    EXPECT_EQ(runtimes(), ProbeResult());
}

TEST_F(SimulatorProbesTest, APercentSignInABundlePathStandsForItself) {
    tree.folder(runtimeRoot + "/iOS 17.5");
    tree.folder(runtimeRoot + "/iOS%2018");
    script.on(listRuntimes, R"({"runtimes":[{"bundlePath":")" + tree.path(runtimeRoot + "/iOS%2017.5") +
                                R"("},{"bundlePath":")" + tree.path(runtimeRoot + "/iOS%2018") + "\"}]}");
    EXPECT_THAT(testing::paths(itemsOf(runtimes())), ElementsAre(tree.path(runtimeRoot + "/iOS 17.5")));
}

TEST_F(SimulatorProbesTest, ARuntimeWithoutABundlePathHidesNothing) {
    tree.folder(runtimeRoot + "/left");
    script.on(listRuntimes, R"({"runtimes":[{"name":"left"},{"bundlePath":null}]})");
    EXPECT_THAT(testing::paths(itemsOf(runtimes())), ElementsAre(tree.path(runtimeRoot + "/left")));
}

TEST_F(SimulatorProbesTest, EveryRuntimeIsOfferedWhereTheToolCannotBeAsked) {
    const std::string known = tree.path(runtimeRoot + "/known");
    tree.file(runtimeRoot + "/known");
    const std::string listing = R"({"runtimes":[{"bundlePath":")" + known + "\"}]}";
    const auto isOffered = [&] {
        const ProbeResult result = runtimes();
        ASSERT_TRUE(result.group);
        EXPECT_EQ(itemsOf(result), ItemList{testing::item(known, 1000)}) << "called a folder unasked";
        EXPECT_THAT(result.errors, IsEmpty());
    };
    isOffered(); // no such tool
    script.failing(listRuntimes, 72, listing);
    isOffered();
    for (const std::string& printed :
         {std::string(), std::string("garbage"), listing.substr(0, listing.size() - 1), std::string("{}"),
          R"({"runtimes":[{"bundlePath":")" + known + R"("},{"bundlePath":1}]})"}) {
        script.on(listRuntimes, printed);
        isOffered();
    }
    script.on(listRuntimes, listing);
    EXPECT_EQ(runtimes(), ProbeResult());
}

TEST_F(SimulatorProbesTest, AMissingRuntimeFolderIsNotEvenAskedAbout) {
    EXPECT_EQ(runtimes(), ProbeResult());
    tree.file(runtimeRoot); // no folder
    EXPECT_EQ(runtimes(), ProbeResult());
    EXPECT_THAT(runner->commands(), IsEmpty());
}

} // namespace
} // namespace vesko
