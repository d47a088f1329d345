// Connections to a target: the user's wishes in, established and logged-in channels out.
//
// A ConnectionInfo is a value; its copies share one channel (session, keep-alive connection,
// resources read in this scan). The channel ends its session when the last copy dies. Nothing is
// kept between scans.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/result/tarsel_result.h"
#include "platform/connection/run_context.h"

namespace Vantix {
namespace VantixConnection {

/// Kinds of connection ("connect case").
enum ConnectCase : std::int32_t {
    kConnectCaseIpmi = 1,
    kConnectCaseCim = 2,
    kConnectCaseRest = 5,
    kConnectCaseVeskRest = 10,  ///< enclosure module with the newer (Redfish) interface
    kConnectCaseLocal = 11
};

/// Connection modes: which kind of target is scanned, and how.
enum ConnectMode : int {
    kConnectModeInbandBmc = 1,
    kConnectModeOobBmc = 2,
    kConnectModeChassis = 3,
    kConnectModeEsxi = 4,
    kConnectModeIoSwitch = 5,
    kConnectModeOobBmcSecond = 6,
    kConnectModeOobBmcThird = 7,
    kConnectModeEnclosure = 8,
    kConnectModeAmd = 9,
    kConnectModeRemoteOs = 11,
    kConnectModeAmdSecond = 13,
    kConnectModeAmdThird = 15,
    kConnectModeInbandLocal = 16
};

/// How to log in to a Redfish service (DSP0266, "Authentication").
enum class AuthMethod {
    kAuto,     ///< session; Basic when the service refuses sessions for a reason other than the
               ///< password
    kSession,  ///< session only
    kBasic     ///< HTTP Basic only
};

/// What to do with the key of an SSH server (RFC 4251, 4.1).
enum class SshHostKeyPolicy {
    kStrict,     ///< only keys that are known
    kAcceptNew,  ///< an unknown server's key is stored; a changed one is refused
    kOff         ///< any key, said aloud
};

/// Where and how to connect. Durations are in seconds; 0 means no limit of its own.
struct ConnectOption {
    int connect_mode = 0;        ///< selects the scan path; first field
    std::string target_address;  ///< host name, IPv4 or IPv6 address (without brackets)
    int port = 0;                ///< 0: the protocol's default
    /// Port of the CIM service, 0: 5989 (5988 without TLS), or `port` where CIM is the only
    /// protocol.
    int cim_port = 0;
    bool cim_plain_http =
        false;  ///< CIM without TLS; no login is sent while certificates are to be verified
    std::string cim_namespace;    ///< where the inventory is; empty: the usual ones, in order
    int ipmi_port = 0;            ///< 0: 623
    int ipmi_cipher = 0;          ///< RMCP+ cipher suite; 0: 17, then 3
    int ipmi_interval_ms = 1000;  ///< between two IPMI sessions with one BMC
    std::string user;
    std::string password;            ///< never logged
    bool verify_certificate = true;  ///< off only on the user's explicit wish
    std::string ca_file;             ///< PEM file used instead of the system's store
    std::string fingerprint;   ///< SHA-256 of the peer's certificate, hexadecimal, colons allowed
    std::string ssh_key_file;  ///< private key; empty: the user's agent and usual keys
    std::string ssh_key_passphrase;  ///< never logged
    SshHostKeyPolicy ssh_host_key = SshHostKeyPolicy::kStrict;
    std::string ssh_known_hosts;  ///< file of known host keys; empty: the user's own
    bool legacy_ssh = false;      ///< also SHA-1 key exchanges and host keys
    /// Folder read instead of "/" for facts about the local host; empty: "/". Device nodes are used
    /// only with "/".
    std::string system_root;
    int timeout_seconds = 60;             ///< one request
    int connect_timeout_seconds = 10;     ///< TCP and TLS
    int inventory_timeout_seconds = 240;  ///< firmware collection and expanded reads
    int deadline_seconds = 1200;          ///< all work on the target together
    AuthMethod auth = AuthMethod::kAuto;
    int max_parallel = 3;                           ///< requests in flight at most (1 to 16)
    std::size_t max_body_bytes = 32 * 1024 * 1024;  ///< longer answers are refused
    bool legacy_tls = false;                        ///< also TLS 1.0/1.1 and weak keys
    bool facts_only = false;                        ///< no inventory will be asked for
    std::string proxy;                              ///< proxy URL; empty: connect directly
    bool use_environment_proxy = false;             ///< honour http_proxy and its kin
    std::string system_id;  ///< Id of the computer system to read; empty: the one the BMC manages
    /// Shared by all copies of this record; never null.
    std::shared_ptr<RunContext> run = std::make_shared<RunContext>();
};

/// One established connection, as every inventory call takes it.
struct ConnectionInfo {
    std::int32_t connect_case = kConnectCaseLocal;
    std::string host;  ///< as the user gave it
    int port = 0;
    std::string user;
    std::string password;  ///< never logged
    std::string session_token;
    std::string base_uri;
    std::string device_path;
    std::string ca_file;
    std::string fingerprint;
    bool verify_certificate = true;
    int timeout_seconds = 60;
    std::shared_ptr<void> channel;  ///< keep-alive handle; the last copy ends the session
};

/// Makes an option record known to the platform operations that this thread calls and that take
/// none (facts about the local host, the remote channel), for as long as the object lives. They
/// nest. `option` must outlive it.
class ActiveRun {
  public:
    explicit ActiveRun(const ConnectOption& option);
    ~ActiveRun();
    ActiveRun(const ActiveRun&) = delete;
    ActiveRun& operator=(const ActiveRun&) = delete;

    /// The innermost record of this thread; a default one when there is none.
    [[nodiscard]] static const ConnectOption& Option();
    /// Where the local families keep the tree they share in this run; null when there is no run.
    [[nodiscard]] static std::shared_ptr<const void>* HostRootSlot();

  private:
    const ConnectOption& option_;
    ActiveRun* const outer_;
    std::shared_ptr<const void> host_root_;
};

// In the modes that scan the machine they run on with its BMC, an empty address is looked up in the
// machine's Redfish host interface record, and without a user the BMC is asked for an account
// (KCS_CONNECT_FAILED when it gives none).
//
// Every function below resets its output first and reports: AUTHENTICATION_FAILED when the target
// refused user or password (or the run's login budget is spent), CONNECTION_FAILED when nobody
// answered, code 36 when the certificate was not trusted, and further codes named below. The
// message is one sentence: what failed, on which target, what to do.

/// Redfish (DSP0266). Further codes: 52 no such service, 54 the password must be changed first,
/// NO_AVAILABLE_USER_ID no free session, KCS_CONNECT_FAILED, TIMEOUT, code 47 interrupted.
/// `connect_case` becomes 5, or 10 for an enclosure module with the newer interface.
[[nodiscard]] TarselResult GetRESTConnection(const ConnectOption& option,
                                             ConnectionInfo& connection);
[[nodiscard]] TarselResult GetRESTConnectionList(const ConnectOption& option,
                                                 std::vector<ConnectionInfo>& list);

/// CIM-XML (DSP0200). Further codes: 55 CIM over HTTPS is off, 66 no CIM service.
[[nodiscard]] TarselResult FetchCIMConnectionList(const ConnectOption& option,
                                                  std::vector<ConnectionInfo>& list);

/// IPMI over LAN, or this machine's own BMC where `target_address` is empty or, in-band, `user`.
/// Further codes: 51 a password that IPMI cannot carry (nothing was sent then), 63 no session could
/// be agreed on, TIMEOUT, code 47 interrupted. Both functions deliver the same connection.
[[nodiscard]] TarselResult FetchIPMIConnection(const ConnectOption& option,
                                               ConnectionInfo& connection);
[[nodiscard]] TarselResult FetchIPMIConnectionList(const ConnectOption& option,
                                                   std::vector<ConnectionInfo>& list);

/// The HTTPS service of an enclosure management module, read with Basic login. `connect_case` as
/// for Redfish; further codes likewise. What failed over Redfish for a reason that holds here too
/// is not tried again.
[[nodiscard]] TarselResult FetchVeskHttpsConnection(const ConnectOption& option,
                                                    ConnectionInfo& connection);

}  // namespace VantixConnection
}  // namespace Vantix
