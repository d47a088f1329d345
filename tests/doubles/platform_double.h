// The whole platform as one mock object, for the unit tests of the scan code.
//
// The doubles beside this file define the platform's classes and functions and forward every call,
// constructors included, to the installed object; so the order of platform calls, calls that must
// not happen and calls that nobody scripted are ordinary mock expectations. A double holds no
// logic. Logging has a double of its own (log_double.h), progress bars too (progress_bar_mock.h);
// the table printer is pure and needs none.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/enclosure/enclosure.h"
#include "platform/identities/identities.h"
#include "platform/pci/pci.h"
#include "platform/raid/raid.h"
#include "platform/remote_command/remote_command.h"
#include "platform/system_info/system_info.h"

namespace doubles {

/// Use it as StrictPlatform. The object installs itself for its lifetime; only one may live at a
/// time. A platform call while none is installed fails the test.
class PlatformDouble {
  public:
    using ConnectOption = Vantix::VantixConnection::ConnectOption;
    using ConnectionInfo = Vantix::VantixConnection::ConnectionInfo;
    using Connections = std::vector<ConnectionInfo>;
    using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;
    using TextPair = std::pair<std::string, std::string>;
    using Text = std::string;

    PlatformDouble();
    virtual ~PlatformDouble();
    PlatformDouble(const PlatformDouble&) = delete;
    PlatformDouble& operator=(const PlatformDouble&) = delete;

    /// The installed object; without one the running test fails and the program ends.
    static PlatformDouble& Current();

    // connection
    MOCK_METHOD(TarselResult, GetRESTConnection, (const ConnectOption&, ConnectionInfo&));
    MOCK_METHOD(TarselResult, GetRESTConnectionList, (const ConnectOption&, Connections&));
    MOCK_METHOD(TarselResult, FetchCIMConnectionList, (const ConnectOption&, Connections&));
    MOCK_METHOD(TarselResult, FetchIPMIConnection, (const ConnectOption&, ConnectionInfo&));
    MOCK_METHOD(TarselResult, FetchIPMIConnectionList, (const ConnectOption&, Connections&));
    MOCK_METHOD(TarselResult, FetchVeskHttpsConnection, (const ConnectOption&, ConnectionInfo&));

    // system_check; the constructor's six list paths come in its own order
    MOCK_METHOD(void, SystemCheckConstructor,
                (const Text&, const Text&, const Text&, const Text&, const Text&, const Text&));
    MOCK_METHOD(bool, IsRedfishSupported, (const ConnectionInfo&));
    MOCK_METHOD(bool, IsRedfishServiceStarting, (const ConnectionInfo&, const Text&));
    MOCK_METHOD(bool, IsTavroV3, (const ConnectionInfo&));
    MOCK_METHOD(std::string, GetReleaseName, (const ConnectionInfo&));
    MOCK_METHOD(int, IsBlueSystem, (const Text&));
    MOCK_METHOD(bool, IsCFCSystem, (const Text&));
    MOCK_METHOD(bool, IsAMDSystem, (const Text&));
    MOCK_METHOD(bool, IsGrantlySystem, (const Text&));
    MOCK_METHOD(bool, GetUEFIVersion, (Text&));
    MOCK_METHOD(int, SystemCheckGetMachineType, (TextPair&));

    // system_info
    MOCK_METHOD(int, GetOSInfo, (TextPair&, Text&));
    MOCK_METHOD(int, GetOSInfo, (TextPair&));
    MOCK_METHOD(int, GetMachineType, (const ConnectionInfo&, TextPair&));
    MOCK_METHOD(int, GetDriverData, (std::vector<Vantix::DriverData>&));
    MOCK_METHOD(int, GetDiskDriverSoftwareIdentity, (Identities&));
    MOCK_METHOD(int, GetTolvSoftwareIdentity, (const ConnectionInfo&, std::vector<TolvInfo>&));
    MOCK_METHOD(int, GetSwitchSoftwareIdentity,
                (const ConnectionInfo&, const Text&, std::vector<SwitchInfo>&));
    MOCK_METHOD(int, GetEsxiOSInfo, (const ConnectionInfo&, TextPair&));

    // bmc_type
    MOCK_METHOD(void, OssaTypeAcquireConstructor, (const ConnectionInfo&));
    MOCK_METHOD(int, GetOssaType, (const ConnectionInfo&, int&));
    MOCK_METHOD(std::string, OssaTypeToString, (int));

    // broadcom_switch
    MOCK_METHOD(void, RedfishBroadComSwitchConstructor, (const ConnectionInfo&));
    MOCK_METHOD(bool, ExistUpdateableBroadcomSwitchDownStream, (const ConnectionInfo&));

    // identities
    MOCK_METHOD(void, AgentlessSoftwareIdentityConstructor, (const ConnectionInfo&));
    MOCK_METHOD(int, GetPLDMSoftwareIdentities, (const ConnectionInfo&, Identities&));
    MOCK_METHOD(int, GetSoftwareIdentities, (const ConnectionInfo&, Identities&, bool));
    MOCK_METHOD(std::string, GetInventoryList, (const ConnectionInfo&));
    MOCK_METHOD(void, xFirmwareInventoryConstructor, (const ConnectionInfo&));
    MOCK_METHOD(Vantix::INVENTORYRETURNCODE, GetXFWSoftwareIdentity,
                (const ConnectionInfo&, Identities&));

    // pmem: the connection form and the local form
    MOCK_METHOD(int, PmemGetSoftwareIdentity, (const ConnectionInfo&, Identities&));
    MOCK_METHOD(int, PmemGetSoftwareIdentity, (Identities&));

    // disk, raid, pci
    MOCK_METHOD(int, GetDiskSoftwareIdentity, (Identities&));
    MOCK_METHOD(int, GetControllerList, (std::vector<Vantix::ARCCONF::RaidController>&, int));
    MOCK_METHOD(int, GetCtrlDisks, (Vantix::ARCCONF::RaidController&));
    MOCK_METHOD(int, GetPciInfo, (std::vector<PciInfo>&));
    MOCK_METHOD(int, GetPciInfoByAddress, (const Text&, PciInfo&));

    // enclosure
    MOCK_METHOD(void, VeskInventoryConstructor, (const ConnectionInfo&));
    MOCK_METHOD(Vantix::VeskInventoryErrorCode, VeskGetMachineType, (const ConnectionInfo&, Text&));
    MOCK_METHOD(Vantix::VeskInventoryErrorCode, VeskGetSerialNumber,
                (const ConnectionInfo&, Text&));
    MOCK_METHOD(Vantix::VeskInventoryErrorCode, VeskGetFirmwareVersion,
                (const ConnectionInfo&, Text&));
    MOCK_METHOD(Vantix::VeskInventoryErrorCode, VeskGetPSUFwInfo,
                (const ConnectionInfo&, std::vector<PSUFwInfo>&));

    // esxi
    MOCK_METHOD(void, EXSIInventoryConstructor, (const ConnectionInfo&));
    MOCK_METHOD(bool, IsUnSpportedEXSIVersion, (const ConnectionInfo&));
    MOCK_METHOD(void, CIMServerConfigConstructor, (const ConnectionInfo&));
    MOCK_METHOD(int, PrevConfig, (const ConnectionInfo&));

    // remote_command; the operations of a channel are those of RemoteCommandMock
    MOCK_METHOD(void, UriConstructor, (const Text&, bool));
    MOCK_METHOD(std::string, UriScheme, ());
    MOCK_METHOD(std::string, UriUser, ());
    MOCK_METHOD(std::string, UriHost, ());
    MOCK_METHOD(int, UriPort, ());
    MOCK_METHOD(std::shared_ptr<RemoteCommandInterface>, CreateRemoteCommand,
                (const Vantix::Uri&, const Text&, const Text&, bool));
    MOCK_METHOD(bool, ExtractSummaryResult, (const Text&, int&, Text&));

    // estimate
    MOCK_METHOD(int, GetScanOOBTimeEstimation, (const Text&, const Text&));
    MOCK_METHOD(int, GetScanInbandTimeEstimation, (const Text&, const Text&, int));
    MOCK_METHOD(void, RememberScan, (const Text&, int));
    MOCK_METHOD(void, UseEstimateFile, (const Text&));

    // config, os
    MOCK_METHOD(int, GetGlobalConfigValue, (const Text&, int));
    MOCK_METHOD(std::string, GetModuleDirectory, ());
    MOCK_METHOD(std::string, DirectoryOfModuleFile, (const Text&));
    MOCK_METHOD(void, SleepMilliseconds, (std::uint32_t));
    MOCK_METHOD(std::int64_t, MonotonicSeconds, ());
    MOCK_METHOD(bool, ReplaceFile, (const Text&, const Text&));
};

using StrictPlatform = testing::StrictMock<PlatformDouble>;

/// A remote channel whose operations are mock methods.
class RemoteCommandMock : public RemoteCommandInterface {
  public:
    RemoteCommandMock();
    ~RemoteCommandMock() override;
    MOCK_METHOD(TarselResult, Setup, (), (override));
    MOCK_METHOD(TarselResult, Run, (const std::string&), (override));
    MOCK_METHOD(TarselResult, DownloadLogs, (), (override));
    MOCK_METHOD(std::string, GetLocalPath, (const std::string&), (override));
};

}  // namespace doubles
