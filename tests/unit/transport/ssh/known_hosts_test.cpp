#include "transport/ssh/known_hosts.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace Vantix::transport {
namespace {

// Public halves of keys made for this test; their private halves were thrown away.
constexpr const char* kKey = "AAAAC3NzaC1lZDI1NTE5AAAAIKka+mb/GUrJku57/PLj+k0xvvKVKFQOY7p/LpldpPTh";
constexpr const char* kKeyFingerprint = "SHA256:W3Suy1p/1SqNoEKA+4cyqvx3ALfTmvhvwNvrP7nWbJ4";
constexpr const char* kOtherKey =
    "AAAAC3NzaC1lZDI1NTE5AAAAIGklLp9diL84GHQWOVux8sEmfxbjhFvmTBCzefeKEwz7";
constexpr const char* kOtherFingerprint = "SHA256:ZcoKoOTKc+kLNf1jrPZ7p743Suxy5H5pnhnKJ8ukrAc";
constexpr const char* kEcdsaKey =
    "AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTYAAABBBMXZpi9i98+6VrYIoN"
    "O+Cl4nxbmDOM1ppehKnzJg1+amADWlegUBF8QsR0hJfNrqAY+Mg3A6AaFZS9igarmSN+U=";
constexpr const char* kHashedLine =
    "|1|k1kvWttZMzaAECvEEWKnysaktFE=|rXegbCG5B4Co0NozNCrCSLRygrk="
    " ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIKka+mb/GUrJku57/PLj+k0xvvKVKFQOY7p/LpldpPTh\n";

std::string Line(const std::string& name, const std::string& key = kKey,
                 const std::string& type = "ssh-ed25519") {
    return name + " " + type + " " + key + "\n";
}

class KnownHostsTest : public testing::Test {
  protected:
    KnownHostsTest() { ssh_pki_import_pubkey_base64(kKey, SSH_KEYTYPE_ED25519, &key_); }
    ~KnownHostsTest() override { ssh_key_free(key_); }
    KnownHostFinding Find(const std::string& text, const std::string& name = "host.example") {
        std::istringstream file(text);
        return FindKnownHost(file, name, key_);
    }
    ssh_key key_ = nullptr;
};

TEST_F(KnownHostsTest, FingerprintIsWrittenAsOpenSshDoes) {
    EXPECT_EQ(KeyFingerprint(key_), kKeyFingerprint);
}

TEST_F(KnownHostsTest, NameCarriesOtherPortsInBrackets) {
    EXPECT_EQ(KnownHostName("Host.Example", 22), "host.example");
    EXPECT_EQ(KnownHostName("host.example", 2222), "[host.example]:2222");
    EXPECT_EQ(KnownHostName("::1", 2222), "[::1]:2222");
}

TEST_F(KnownHostsTest, EmptyFileKnowsNobody) {
    EXPECT_EQ(Find("").state, KnownHost::kUnknown);
}

TEST_F(KnownHostsTest, SameKeyIsFound) {
    const KnownHostFinding finding = Find("# comment\n\n" + Line("host.example"));
    EXPECT_EQ(finding.state, KnownHost::kSame);
    EXPECT_EQ(finding.line, 3);
}

TEST_F(KnownHostsTest, ListsPatternsAndHashedNamesAreUnderstood) {
    EXPECT_EQ(Find(Line("one,host.example,two")).state, KnownHost::kSame);
    EXPECT_EQ(Find(Line("*.example")).state, KnownHost::kSame);
    EXPECT_EQ(Find(kHashedLine).state, KnownHost::kSame);
    EXPECT_EQ(Find(kHashedLine, "other.example").state, KnownHost::kUnknown);
}

TEST_F(KnownHostsTest, LinesOfOtherServersDoNotCount) {
    EXPECT_EQ(Find(Line("other.example")).state, KnownHost::kUnknown);
    EXPECT_EQ(Find(Line("[host.example]:2222")).state, KnownHost::kUnknown);
}

TEST_F(KnownHostsTest, OtherKeyOfTheSameTypeIsAChange) {
    const KnownHostFinding finding = Find(Line("a") + Line("host.example", kOtherKey));
    EXPECT_EQ(finding.state, KnownHost::kChanged);
    EXPECT_EQ(finding.line, 2);
    EXPECT_EQ(finding.fingerprint, kOtherFingerprint);
}

TEST_F(KnownHostsTest, OneFittingKeyAmongSeveralIsEnough) {
    const std::string other = Line("host.example", kOtherKey);
    EXPECT_EQ(Find(other + Line("host.example")).state, KnownHost::kSame);
    EXPECT_EQ(Find(Line("host.example") + other).state, KnownHost::kSame);
}

TEST_F(KnownHostsTest, KeyOfAnotherTypeIsToldApart) {
    const std::string ecdsa = Line("host.example", kEcdsaKey, "ecdsa-sha2-nistp256");
    EXPECT_EQ(Find(ecdsa).state, KnownHost::kOtherType);
    EXPECT_EQ(Find(ecdsa + Line("host.example", kOtherKey)).line, 2);
    EXPECT_EQ(Find(Line("host.example", kOtherKey) + ecdsa).line, 1);
}

TEST_F(KnownHostsTest, RevokedKeyIsNeverTrusted) {
    const KnownHostFinding finding = Find(Line("host.example") + "@revoked " + Line("*"));
    EXPECT_EQ(finding.state, KnownHost::kRevoked);
    EXPECT_EQ(finding.line, 2);
    EXPECT_EQ(Find("@revoked " + Line("*", kOtherKey)).state, KnownHost::kUnknown);
}

TEST_F(KnownHostsTest, DamagedLinesArePassedOver) {
    EXPECT_EQ(Find("host.example\nhost.example ssh-ed25519\nhost.example ssh-ed25519 AAAA\n"
                   "|1|x|y ssh-ed25519 z\n@cert-authority * ssh-ed25519 x\n" +
                   Line("host.example"))
                  .state,
              KnownHost::kSame);
}

TEST_F(KnownHostsTest, LineEndsOfOtherSystemsAreUnderstood) {
    EXPECT_EQ(Find("host.example ssh-ed25519 " + std::string(kKey) + "\r\n").state,
              KnownHost::kSame);
}

}  // namespace
}  // namespace Vantix::transport
