#include "tarsel/mode_table.h"

namespace tarsel {

std::string ModeTable() {
    return "What is scanned, over which protocol and port, and what the account needs:\n"
           "  --bmc     a server, through its BMC\n"
           "            Redfish, HTTPS port 443; where that gives nothing CIM-XML, HTTPS port "
           "5989\n"
           "            an account that may log in and read (Redfish role ReadOnly)\n"
           "  --tolv    the management module of a blade chassis\n"
           "            CIM-XML, HTTPS port 5989\n"
           "            an account that may read over CIM\n"
           "  --tolv --switch BAY\n"
           "            the I/O switch in that bay, through the management module of its chassis\n"
           "            CIM-XML, HTTPS port 5989\n"
           "            an account that may read over CIM\n"
           "  --esxi    an ESXi host up to release 8, its CIM service (sfcbd-watchdog) running\n"
           "            CIM-XML, HTTPS port 5989; if refused, HTTPS port 443 is asked why, "
           "without\n"
           "            login\n"
           "            an account with the privilege Host.Cim.CimInteraction\n"
           "  --vesk    the management module of a dense enclosure\n"
           "            Redfish or the module's older service, HTTPS port 443; where neither "
           "answers\n"
           "            IPMI over LAN, UDP port 623, which needs the program ipmitool\n"
           "            an account that may log in and read; over IPMI at least the privilege "
           "USER\n"
           "            and a password of at most 20 bytes\n";
}

}  // namespace tarsel
