#include "platform/cim/hypervisor_reader.h"

#include <gtest/gtest.h>

#include "instance_builder.h"

namespace Vantix::cim {
namespace {

InstanceBuilder Os(const std::string& caption, const std::string& version) {
    return AnInstance("EX_OperatingSystem", caption)
        .With("Caption", caption)
        .With("Version", version);
}

TEST(HypervisorReaderTest, NameAndVersionMakeTheOs) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("VMware ESXi", "8.0.2")};

    const HypervisorFacts facts = ReadHypervisor(snapshot);

    EXPECT_EQ(facts.os, "VMware ESXi 8.0.2");
    EXPECT_EQ(facts.version, "8.0.2");
    EXPECT_EQ(facts.architecture, "x86_64");
}

TEST(HypervisorReaderTest, VersionInTheNameIsNotRepeated) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("VMware ESXi 7.0.3 build-1", "7.0.3")};

    EXPECT_EQ(ReadHypervisor(snapshot).os, "VMware ESXi 7.0.3 build-1");
}

TEST(HypervisorReaderTest, GuestsArePassedOver) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("Example Linux", "5"), Os("VMware ESXi", "8.0.2")};

    EXPECT_EQ(ReadHypervisor(snapshot).version, "8.0.2");
}

TEST(HypervisorReaderTest, SoleSystemIsTheHostWhateverItsName) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("Unnamed", "6.7")};

    EXPECT_EQ(ReadHypervisor(snapshot).os, "Unnamed 6.7");
}

TEST(HypervisorReaderTest, GuestsAloneAreNoHost) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("Example Linux", "5"), Os("Other Linux", "6")};

    EXPECT_EQ(ReadHypervisor(snapshot).os, "");
}

TEST(HypervisorReaderTest, ArmProcessorTellsTheArchitecture) {
    CimSnapshot snapshot;
    snapshot.operating_systems = {Os("VMware ESXi", "8.0.2")};
    snapshot.processors = {AnInstance("EX_Processor", "p").With("Family", "257")};

    EXPECT_EQ(ReadHypervisor(snapshot).architecture, "aarch64");
}

TEST(HypervisorReaderTest, ReleasesUpToEightHaveACimService) {
    for (const char* version : {"5.5.0", "6.7.0", "7.0.3", "8.0.3", "8"}) {
        EXPECT_TRUE(HasCimService(version)) << version;
    }
    for (const char* version : {"9.0.0", "10.1", "9"}) EXPECT_FALSE(HasCimService(version));
}

TEST(HypervisorReaderTest, UnknownVersionHasTheBenefitOfTheDoubt) {
    EXPECT_TRUE(HasCimService(""));
    EXPECT_TRUE(HasCimService("unknown"));
}

TEST(HypervisorReaderTest, ProductVersionIsReadFromTheWebService) {
    EXPECT_EQ(ReadProductVersion("<x><version>1</version><about><name>n</name><version> 8.0.3\n"
                                 "</version></about></x>"),
              "8.0.3");
}

TEST(HypervisorReaderTest, AnyOtherAnswerHasNoProductVersion) {
    for (const char* body : {"", "<about>", "<about></about>", "</about><about>",
                             "<about></version><version></about>", "<html>Log in</html>"}) {
        EXPECT_EQ(ReadProductVersion(body), "") << body;
    }
}

}  // namespace
}  // namespace Vantix::cim
