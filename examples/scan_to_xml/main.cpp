// Scans one server through its BMC with the installed library, saves the scan file and prints the
// tables. The password comes from the environment variable BMC_PASSWORD.
//
//   scan_to_xml HOST PORT USER SHA256_OF_CERTIFICATE FILE

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <string>

#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"

namespace {

service::UpdateScanOption OptionFrom(char** arguments, const char* password) {
    service::UpdateScanOption option;
    auto& connect = option.connect_option;
    connect.connect_mode = Vantix::VantixConnection::kConnectModeOobBmc;
    connect.target_address = arguments[1];
    const std::string port = arguments[2];
    std::from_chars(port.data(), port.data() + port.size(), connect.port);
    connect.user = arguments[3];
    connect.password = password;
    connect.fingerprint = arguments[4];
    return option;
}

}  // namespace

int main(int argc, char** argv) {
    const char* password = std::getenv("BMC_PASSWORD");
    if (argc != 6 || password == nullptr) {
        std::cerr << "usage: BMC_PASSWORD=... scan_to_xml HOST PORT USER SHA256 FILE\n";
        return 2;
    }
    service::UpdateScanReport report;
    service::ServiceUpdateScan scan(OptionFrom(argv, password));
    const TarselResult result = scan.Run(report);
    if (!result.IsSucceed()) {
        std::cerr << "the scan failed: " << result << '\n';
        return 1;
    }
    if (service::SerializeScanReport::SaveToXml(report, argv[5]) != 0) {
        std::cerr << argv[5] << " could not be written\n";
        return 1;
    }
    service::SerializeScanReport::PrintResult(report, std::cout, "fw");
    return 0;
}
