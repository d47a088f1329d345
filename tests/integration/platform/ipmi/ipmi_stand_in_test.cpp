// What ipmi_sim cannot show: a script in the place of ipmitool prints invented texts in the words
// of the real one.
#include "integration/platform/ipmi/ipmi_test_base.h"
#include "platform/identities/identities.h"

namespace ipmi_tests {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

// Carries out the script of a session like ipmitool: the echo lines, and answers for a few
// commands.
constexpr const char* kSession = R"sh(
for last; do :; done
while read -r word rest; do
  case "$word $rest" in
    echo*) echo "$rest " ;;
    "raw 0x06 0x01") echo " 20 01 09 08 02 9f fe ff 00 02 0f 0a 0b 0c 0d" ;;
    "raw 0x2c 0x2e 0x00") echo " 00 00 3d 01 02 03 04 01" ;;
    "raw 0x2c 0x2f 0x00 0x00 0x02") echo " 00 42 4f 4f 54 00 00 00 00 00 00 00 00" ;;
    "raw 0x2c 0x2f 0x00 0x00 0x01") echo " 00 02 17 00 00 00 01" ;;
    raw*) echo "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x10 rsp=0xcb)" >&2 ;;
  esac
done <"$last"
)sh";

// Every run leaves its arguments behind.
constexpr const char* kNote = "echo \"$*\" >>\"$0.calls\"\n";

std::string RefuseUnless(const std::string& words, const std::string& line) {
    return "case \"$*\" in\n  *\"" + words + "\"*) ;;\n  *) echo '" + line +
           "' >&2\n     echo 'Error: Unable to establish IPMI v2 / RMCP+ session' >&2; exit 1 "
           ";;\n"
           "esac\n";
}

TarselResult Fetch(ConnectionInfo& connection, int deadline_seconds = 1200) {
    ConnectOption option = OptionFor(1);
    option.deadline_seconds = deadline_seconds;
    return FetchIPMIConnection(option, connection);
}

TEST(IpmiStandInTest, LowerLevelIsTriedForALesserAccount) {
    const StandInTool tool(
        kNote + RefuseUnless("-L USER", "Set Session Privilege Level to ADMINISTRATOR failed") +
        kSession);
    ConnectionInfo connection;
    const TarselResult result = Fetch(connection);
    EXPECT_TRUE(result.IsSucceed()) << result;
    EXPECT_THAT(tool.Read("ipmitool.calls"), HasSubstr("-L OPERATOR"));
}

TEST(IpmiStandInTest, OlderSuiteIsTriedWhereTheNewerIsRefused) {
    const StandInTool tool(
        kNote +
        RefuseUnless("-C 3 ", "Error in open session response message : no matching cipher suite") +
        kSession);
    ConnectionInfo connection;
    EXPECT_TRUE(Fetch(connection).IsSucceed());
    EXPECT_THAT(tool.Read("ipmitool.calls"), HasSubstr("-C 17 "));
}

TEST(IpmiStandInTest, RetriesAndWaitsOfTheToolAreAlwaysGiven) {
    const StandInTool tool(kNote + std::string(kSession));
    ConnectionInfo connection;
    ASSERT_TRUE(Fetch(connection).IsSucceed());
    EXPECT_THAT(tool.Read("ipmitool.calls"), HasSubstr("-v -I lanplus"));
    EXPECT_THAT(tool.Read("ipmitool.calls"), HasSubstr("-N 2 -R 2"));
}

TEST(IpmiStandInTest, ComponentsOfHpmAreListed) {
    const StandInTool tool(kSession);
    ConnectionInfo connection;
    ASSERT_TRUE(Fetch(connection).IsSucceed());
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> list;
    EXPECT_EQ(Vantix::xFirmwareInventory(connection).GetXFWSoftwareIdentity(list),
              Vantix::INVENTORY_SUCCESS);
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].Description, "BMC firmware (auxiliary revision 0a 0b 0c 0d)");
    EXPECT_EQ(list[1].Name, "BOOT");
    EXPECT_EQ(list[1].VersionString, "2.17");
}

TEST(IpmiStandInTest, HungToolIsEndedInTime) {
    const StandInTool tool("trap '' TERM\nwhile :; do sleep 0.1; done");
    ConnectionInfo connection;
    const TarselResult result = Fetch(connection, 1);
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_THAT(result.message, HasSubstr("took too long"));
}

TEST(IpmiStandInTest, ToolThatCrashesIsNotTheBmcsFault) {
    const StandInTool tool("kill -SEGV $$");
    ConnectionInfo connection;
    const TarselResult result = Fetch(connection);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("ipmitool does not work"));
}

TEST(IpmiStandInTest, DamagedMakerListIsNotTheBmcsFault) {
    const StandInTool tool("echo 'Failed to initialize the OEM info dictionary' >&2; exit 1");
    ConnectionInfo connection;
    EXPECT_THAT(Fetch(connection).message, HasSubstr("ipmitool does not work"));
}

TEST(IpmiStandInTest, OutputWithoutEndOrSenseIsNoConnection) {
    const StandInTool tool("head -c 6000000 /dev/urandom; head -c 6000000 /dev/urandom >&2");
    ConnectionInfo connection;
    EXPECT_FALSE(Fetch(connection).IsSucceed());
}

TEST(IpmiStandInTest, SecretStandsInNoCommandLineAndNoEnvironment) {
    // The stand-in looks at every process of the machine while the session runs. The pattern
    // comes from the password file: the search itself must not show the secret either.
    const StandInTool tool(
        "while [ \"$1\" != -f ]; do shift; done\n"
        "for file in /proc/[0-9]*/cmdline /proc/[0-9]*/environ; do\n"
        "  grep -l -a -F -f \"$2\" \"$file\" 2>/dev/null >>\"$0.found\"\n"
        "done\n"
        "cat \"$2\" | wc -c >\"$0.searched\"\n" +
        std::string(kSession));
    ConnectionInfo connection;
    EXPECT_TRUE(Fetch(connection).IsSucceed());
    EXPECT_EQ(tool.Read("ipmitool.searched"), "14\n");
    EXPECT_EQ(tool.Read("ipmitool.found"), "");
}

}  // namespace
}  // namespace ipmi_tests
