// What the user wants scanned, and how: the record that a front end fills.
//
// Deliberately not here: the meaning of the connection description, which belongs to the
// connection family.
#pragma once

#include <string>

#include "platform/connection/connection.h"

namespace service {

/// A plain record; the service works on its own copy.
struct UpdateScanOption {
    int bay_id = 0;          ///< slot of the target inside an enclosure
    bool is_zelvar = false;  ///< driven by the management suite: legacy systems are scanned too
    bool is_check_device = false;      ///< device check requested; only logged
    bool is_cfc_system = false;        ///< the target is a CFC-class system
    bool is_csp_system = false;        ///< the target is a CSP-class system
    bool remote_flag = false;          ///< passed on to the remote command factory
    bool info_only = false;            ///< machine type and scope only, no inventory
    bool report_check_device = false;  ///< the check-device flag of the report
    std::string output_dir;            ///< passed on to the remote command factory
    std::string package_dir;           ///< passed on to the remote command factory
    std::string remote_command;        ///< run by a remote target; logged on failure: no secrets
    std::string inband_argument;       ///< carried for the in-band scan
    std::string scan_type;             ///< "fw" firmware only, "dd" drivers only, else both
    Vantix::VantixConnection::ConnectOption connect_option;  ///< its connect_mode selects the scan
};

}  // namespace service
