#include "service/update_scan_service/detail/version_normalization.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/builders.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using Vantix::VantixOptions::SoftwareIdentity_;

std::string CfcVersion(const std::string& software_id, const std::string& version) {
    SoftwareIdentity_ identity = AnIdentity().SoftwareId(software_id).Version(version);
    NormalizeCfcVersion(identity);
    return identity.VersionString;
}

std::string CspVersion(const std::string& software_id, const std::string& version) {
    SoftwareIdentity_ identity = AnIdentity().SoftwareId(software_id).Version(version);
    NormalizeCspVersion(identity);
    return identity.VersionString;
}

TEST(NormalizeCfcVersionTest, OwnIdentifierIsRemovedFromTheBeginning) {
    EXPECT_EQ(CfcVersion("BMC", "BMC-1.20"), "1.20");
    EXPECT_EQ(CfcVersion("NIC", "NIC-3"), "3");
}

TEST(NormalizeCfcVersionTest, OwnIdentifierIsMatchedInItsCase) {
    EXPECT_EQ(CfcVersion("BMC", "bmc-1.20"), "bmc-1.20");
}

TEST(NormalizeCfcVersionTest, OwnIdentifierNeedsItsDash) {
    EXPECT_EQ(CfcVersion("NIC", "NIC3"), "NIC3");
}

TEST(NormalizeCfcVersionTest, EmptyIdentifierRemovesADash) {
    EXPECT_EQ(CfcVersion("", "-1.0"), "1.0");
    EXPECT_EQ(CfcVersion("", "1.0"), "1.0");
}

TEST(NormalizeCfcVersionTest, PrefixOfTheIdentifierIsRemoved) {
    EXPECT_EQ(CfcVersion("FPGA", "CPLD-7"), "7");
    EXPECT_EQ(CfcVersion("UEFI", "Bios-A1"), "A1");
    EXPECT_EQ(CfcVersion("BMC", "ActiveBMC-2.10"), "2.10");
    EXPECT_EQ(CfcVersion("BMC-Backup", "BackupBMC-2.10"), "2.10");
}

TEST(NormalizeCfcVersionTest, PrefixOfAnotherIdentifierStays) {
    EXPECT_EQ(CfcVersion("BMC-Backup", "ActiveBMC-2.10"), "ActiveBMC-2.10");
    EXPECT_EQ(CfcVersion("BMC", "BackupBMC-2.10"), "BackupBMC-2.10");
    EXPECT_EQ(CfcVersion("NIC", "CPLD-7"), "CPLD-7");
}

TEST(NormalizeCfcVersionTest, IdentifierAndPrefixAreMatchedInTheirCase) {
    EXPECT_EQ(CfcVersion("BMC-BACKUP", "BackupBMC-2.10"), "BackupBMC-2.10");
    EXPECT_EQ(CfcVersion("UEFI", "BIOS-A1"), "BIOS-A1");
}

TEST(NormalizeCfcVersionTest, OwnIdentifierExcludesThePrefixRule) {
    EXPECT_EQ(CfcVersion("BMC", "BMC-ActiveBMC-2"), "ActiveBMC-2");
    EXPECT_EQ(CfcVersion("BMC", "ActiveBMC-BMC-2"), "BMC-2");
}

TEST(NormalizeCfcVersionTest, PrefixInTheMiddleStays) {
    EXPECT_EQ(CfcVersion("FPGA", "v-CPLD-7"), "v-CPLD-7");
    EXPECT_EQ(CfcVersion("BMC", "xBMC-7"), "xBMC-7");
}

TEST(NormalizeCfcVersionTest, UefiIsCutAtTheBracketAndTrimmed) {
    EXPECT_EQ(CfcVersion("UEFI", "Bios-ABC123 (2023-01-02)"), "ABC123");
    EXPECT_EQ(CfcVersion("UEFI", "UEFI-TEE1 (x)"), "TEE1");
    EXPECT_EQ(CfcVersion("UEFI", " \t\v\f\r\nA1 B2 \n(x) (y)"), "A1 B2");
}

TEST(NormalizeCfcVersionTest, UefiThatBeginsWithTheBracketBecomesEmpty) {
    EXPECT_EQ(CfcVersion("UEFI", "(2023)"), "");
    EXPECT_EQ(CfcVersion("UEFI", "  (2023)"), "");
}

TEST(NormalizeCfcVersionTest, UefiWithoutBracketIsNotTrimmed) {
    EXPECT_EQ(CfcVersion("UEFI", " A1 "), " A1 ");
}

TEST(NormalizeCfcVersionTest, OtherIdentifiersAreNotCut) {
    EXPECT_EQ(CfcVersion("uefi", "A1 (x)"), "A1 (x)");
    EXPECT_EQ(CfcVersion("BMC", "ActiveBMC-1 (x)"), "1 (x)");
}

TEST(NormalizeCfcVersionTest, EmptyVersionStaysEmpty) {
    EXPECT_EQ(CfcVersion("UEFI", ""), "");
}

TEST(NormalizeCfcVersionTest, RenamesNothing) {
    SoftwareIdentity_ identity =
        AnIdentity().SoftwareId("UEFI").Name("UEFI").InstanceId("FPGAImage").Version("Bios-1");
    NormalizeCfcVersion(identity);
    EXPECT_EQ(identity.Name, "UEFI");
    EXPECT_EQ(identity.Classifications, "");
}

TEST(NormalizeCspVersionTest, PrefixOfTheIdentifierIsRemoved) {
    EXPECT_EQ(CspVersion("UEFI", "BIOSImage1-1.5"), "1.5");
    EXPECT_EQ(CspVersion("UEFI-Backup", "BIOSImage2-1.5"), "1.5");
    EXPECT_EQ(CspVersion("BMC", "BMCImage1-2"), "2");
    EXPECT_EQ(CspVersion("BMC-Backup", "BMCImage2-2"), "2");
}

TEST(NormalizeCspVersionTest, PrefixOfAnotherIdentifierStays) {
    EXPECT_EQ(CspVersion("UEFI", "BIOSImage2-1.5"), "BIOSImage2-1.5");
    EXPECT_EQ(CspVersion("BMC-Backup", "BMCImage1-2"), "BMCImage1-2");
    EXPECT_EQ(CspVersion("NIC", "BMCImage1-2"), "BMCImage1-2");
}

TEST(NormalizeCspVersionTest, ComparisonsAreCaseSensitive) {
    EXPECT_EQ(CspVersion("BMC-BACKUP", "BMCImage2-2"), "BMCImage2-2");
    EXPECT_EQ(CspVersion("BMC", "bmcimage1-2"), "bmcimage1-2");
}

TEST(NormalizeCspVersionTest, OwnIdentifierAndBracketStay) {
    EXPECT_EQ(CspVersion("BMC", "BMC-1.20"), "BMC-1.20");
    EXPECT_EQ(CspVersion("UEFI", "BIOSImage1-1 (x)"), "1 (x)");
}

TEST(NormalizeCspVersionTest, PrefixInTheMiddleStays) {
    EXPECT_EQ(CspVersion("BMC", "v-BMCImage1-2"), "v-BMCImage1-2");
}

TEST(NormalizeCspVersionTest, UefiIsRenamed) {
    SoftwareIdentity_ identity =
        AnIdentity().SoftwareId("UEFI").Name("UEFI").Version("BIOSImage1-1.5");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "BIOSImage1");
    EXPECT_EQ(identity.VersionString, "1.5");
}

TEST(NormalizeCspVersionTest, UefiIsRenamedWithoutThePrefixToo) {
    SoftwareIdentity_ identity = AnIdentity().SoftwareId("UEFI").Name("UEFI").Version("1.5");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "BIOSImage1");
    EXPECT_EQ(identity.VersionString, "1.5");
}

TEST(NormalizeCspVersionTest, UefiOfAnotherNameKeepsIt) {
    SoftwareIdentity_ identity = AnIdentity().SoftwareId("UEFI").Name("uefi");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "uefi");
}

TEST(NormalizeCspVersionTest, BackupOfUefiKeepsItsName) {
    SoftwareIdentity_ identity = AnIdentity().SoftwareId("UEFI-Backup").Name("UEFI");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "UEFI");
}

TEST(NormalizeCspVersionTest, FpgaImageTakesIdentifierAsNameAndItsClassification) {
    SoftwareIdentity_ identity = AnIdentity()
                                     .SoftwareId("FPGA-X")
                                     .Name("image")
                                     .InstanceId("FPGAImage_2")
                                     .Classifications("10");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "FPGA-X");
    EXPECT_EQ(identity.Classifications, "FPGA");
}

TEST(NormalizeCspVersionTest, FpgaRuleOutranksTheNameOfUefi) {
    SoftwareIdentity_ identity =
        AnIdentity().SoftwareId("UEFI").Name("UEFI").InstanceId("FPGAImage");
    NormalizeCspVersion(identity);
    EXPECT_EQ(identity.Name, "UEFI");
}

TEST(NormalizeCspVersionTest, FpgaImageIsMatchedAtTheBeginningInItsCase) {
    for (const char* instance_id : {"", "fpgaimage", "xFPGAImage", "FPGAImag"}) {
        SoftwareIdentity_ identity =
            AnIdentity().SoftwareId("FPGA-X").Name("image").InstanceId(instance_id);
        NormalizeCspVersion(identity);
        EXPECT_EQ(identity.Name, "image") << instance_id;
        EXPECT_EQ(identity.Classifications, "") << instance_id;
    }
}

// ---- both over a whole list

TEST(NormalizeVersionsTest, NothingChangesUnlessAskedFor) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities = {
        AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1.0")};
    NormalizeVersions(identities, false, false);
    EXPECT_EQ(identities[0].VersionString, "BMC-BMCImage1-1.0");
}

TEST(NormalizeVersionsTest, EveryRecordIsNormalised) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities = {
        AnIdentity().SoftwareId("BMC").Version("BMC-1"),
        AnIdentity().SoftwareId("FPGA").Version("CPLD-2")};
    NormalizeVersions(identities, true, false);
    EXPECT_EQ(identities[0].VersionString, "1");
    EXPECT_EQ(identities[1].VersionString, "2");
}

TEST(NormalizeVersionsTest, CfcComesBeforeCsp) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities = {
        AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1.0")};
    NormalizeVersions(identities, true, true);
    EXPECT_EQ(identities[0].VersionString, "1.0");
}

}  // namespace
}  // namespace service::detail
