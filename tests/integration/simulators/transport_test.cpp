// TLS, addresses, limits of connections, and stopping.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "bmc_simulator/certificate.h"
#include "integration/simulators/small_tree.h"
#include "support/pattern.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::TlsVersion;
using test_support::HasPattern;
using ::testing::StartsWith;

TEST(BmcSimulatorTransportTest, CertificateIsVerifiedByItsOwnFile) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_OK);
    EXPECT_THAT(bmc.CertificatePem(), StartsWith("-----BEGIN CERTIFICATE-----"));
    EXPECT_THAT(bmc.Fingerprint(), HasPattern("^[0-9a-f]{64}$"));
}

TEST(BmcSimulatorTransportTest, CertificateOfAnotherOneIsNotTrusted) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    BmcSimulator other(tree.Options());
    EXPECT_NE(bmc.Fingerprint(), other.Fingerprint());
    const Reply reply = TestClient(bmc.Url(), other.CaFile()).Get(kRoot);
    EXPECT_EQ(reply.result, CURLE_PEER_FAILED_VERIFICATION);
}

TEST(BmcSimulatorTransportTest, CertificateNamesTheHostByNameToo) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client("https://localhost:" + std::to_string(bmc.Port()), bmc.CaFile());
    client.SetOption(CURLOPT_IPRESOLVE, static_cast<long>(CURL_IPRESOLVE_V4));
    EXPECT_EQ(client.Get(kRoot).result, CURLE_OK);
}

TEST(BmcSimulatorTransportTest, CertificateForAnotherHostIsNotAccepted) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.certificate_names = {"DNS:other-host.example"};
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_PEER_FAILED_VERIFICATION);
}

TEST(BmcSimulatorTransportTest, ExpiredCertificateIsNotAccepted) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.certificate_expired = true;
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_PEER_FAILED_VERIFICATION);
}

TEST(BmcSimulatorTransportTest, GivenCertificateIsServed) {
    const SmallTree tree;
    const simulators::Certificate given =
        simulators::MakeCertificate(simulators::KeyKind::kEcP256, {"IP:127.0.0.1"}, false);
    BmcOptions options = tree.Options();
    options.certificate_pem = given.certificate_pem;
    options.private_key_pem = given.private_key_pem;
    BmcSimulator bmc(options);
    EXPECT_EQ(bmc.Fingerprint(), given.fingerprint);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_OK);
}

TEST(BmcSimulatorTransportTest, GivenCertificateNeedsItsKey) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.certificate_pem = BmcSimulator(tree.Options()).CertificatePem();
    options.private_key_pem = "no key";
    EXPECT_ANY_THROW(BmcSimulator bmc(options));
}

TEST(BmcSimulatorTransportTest, Tls12CanBeTheHighest) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.tls_max = TlsVersion::kTls12;
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_OK);
    TestClient modern(bmc);
    modern.SetOption(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_3));
    EXPECT_EQ(modern.Get(kRoot).result, CURLE_SSL_CONNECT_ERROR);
}

TEST(BmcSimulatorTransportTest, Tls11NeedsAClientThatLowersItsGuard) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.tls_max = TlsVersion::kTls11;
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).result, CURLE_SSL_CONNECT_ERROR);
    // The client gives up before the server learns of it.
    while (bmc.Counts().handshakes_failed == 0) std::this_thread::yield();
    TestClient legacy(bmc);
    legacy.SetOption(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_0));
    legacy.SetOption(CURLOPT_SSL_CIPHER_LIST, "DEFAULT:@SECLEVEL=0");
    EXPECT_EQ(legacy.Get(kRoot).result, CURLE_OK);
}

TEST(BmcSimulatorTransportTest, WeakKeyNeedsAClientThatLowersItsGuard) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.key_kind = simulators::KeyKind::kRsa1024;
    BmcSimulator bmc(options);
    // What distributions ask for; OpenSSL as its makers build it asks for less.
    TestClient guarded(bmc);
    guarded.SetOption(CURLOPT_SSL_CIPHER_LIST, "DEFAULT:@SECLEVEL=2");
    EXPECT_NE(guarded.Get(kRoot).result, CURLE_OK);
    TestClient legacy(bmc);
    legacy.SetOption(CURLOPT_SSL_CIPHER_LIST, "DEFAULT:@SECLEVEL=0");
    EXPECT_EQ(legacy.Get(kRoot).result, CURLE_OK);
}

TEST(BmcSimulatorTransportTest, Ipv6LoopbackServesOnTheSamePort) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.listen_ipv6 = true;
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc.UrlIpv6(), bmc.CaFile()).Get(kRoot).status, 200);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).status, 200);
}

TEST(BmcSimulatorTransportTest, PlainHttpServesWithoutHandshake) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.plain_http = true;
    BmcSimulator bmc(options);
    EXPECT_THAT(bmc.Url(), StartsWith("http://127.0.0.1:"));
    EXPECT_EQ(bmc.CaFile(), "");
    EXPECT_EQ(TestClient(bmc).Get(kRoot).status, 200);
    EXPECT_EQ(bmc.Counts().handshakes, 0);
    EXPECT_EQ(bmc.Counts().connections, 1);
}

TEST(BmcSimulatorTransportTest, ConnectionsOverTheLimitAreReset) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.max_connections = 1;
    BmcSimulator bmc(options);
    TestClient first(bmc);
    EXPECT_EQ(first.Get(kRoot).status, 200);
    EXPECT_NE(TestClient(bmc).Get(kRoot).result, CURLE_OK);
    EXPECT_EQ(first.Get(kRoot).status, 200);
    EXPECT_EQ(bmc.Counts().connections_refused, 1);
}

TEST(BmcSimulatorTransportTest, ClientCanAskToClose) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.AddHeader("Connection: close");
    EXPECT_EQ(client.Get(kRoot).Header("connection"), "close");
    EXPECT_EQ(client.Get(kRoot).new_connections, 1);
}

TEST(BmcSimulatorTransportTest, NonsenseEndsTheConnectionOnly) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.SetOption(CURLOPT_CUSTOMREQUEST, nullptr);
    EXPECT_NE(client.Send("NON SENSE \x01", kRoot).result, CURLE_OK);
    EXPECT_EQ(TestClient(bmc).Get(kRoot).status, 200);
}

TEST(BmcSimulatorTransportTest, StoppedSimulatorRefusesConnectionsAndRemovesItsFile) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    EXPECT_EQ(client.Get(kRoot).status, 200);
    bmc.Stop();
    EXPECT_FALSE(std::filesystem::exists(bmc.CaFile()));
    EXPECT_EQ(TestClient(bmc.Url(), "").Get(kRoot).result, CURLE_COULDNT_CONNECT);
    EXPECT_EQ(bmc.Counts().connections_open, 0);
}

TEST(BmcSimulatorTransportTest, StopEndsASilentRequestToo) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    simulators::FaultRule rule;
    rule.fault.kind = simulators::Fault::Kind::kSilent;
    bmc.SetFaults({rule});
    CURLcode result = CURLE_OK;
    std::thread asking([&] { result = TestClient(bmc).Get(kRoot).result; });
    while (bmc.Counts().in_flight == 0) std::this_thread::yield();
    bmc.Stop();
    asking.join();
    EXPECT_NE(result, CURLE_OK);
    EXPECT_NE(result, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(bmc.Counts().in_flight, 0);
}

TEST(BmcSimulatorTransportTest, TakenPortIsAnError) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    const BmcSimulator first(options);
    options.port = first.Port();
    EXPECT_THROW(BmcSimulator second(options), std::runtime_error);
}

}  // namespace
}  // namespace simulator_test
