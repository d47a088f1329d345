"""What the files of the server say that its own operating system shows."""

PCI_IDS = """\
# Names of invented devices, in the form of the common database.
9005  Example Storage
\t0e01  EXRAID 8i
\t\t9005 0e10  Example RAID 8i Adapter
fe01  Example Networks
\t0001  EXNIC 25G Controller
\t\tfe01 0a01  Example NIC 25G 2-Port Adapter
\t0002  EXNIC 25G Virtual Function
fe02  Example Flash
\t0001  EXFLASH NVMe Controller
fe03  Example Chips
\t0001  Example Host Bridge
\t0002  Example PCIe Root Port
\t0003  Example SATA Controller
\t0004  Example Accelerator
C 01  Mass storage controller
\t04  RAID bus controller
\t06  SATA controller
\t08  Non-Volatile memory controller
C 02  Network controller
\t00  Ethernet controller
C 06  Bridge
\t00  Host bridge
\t04  PCI bridge
C 12  Processing accelerators
\t00  Processing accelerators
"""

OS_RELEASE = """\
NAME="Example Server OS"
ID=exampleos
VERSION="9.4 (Fake Falcon)"
VERSION_ID="9.4"
PRETTY_NAME="Example Server OS 9.4 (Fake Falcon)"
"""

# Columns as wide as in releases 2 and 3 of the program.
ARCCONF = """\
#!/bin/sh
# Stands in for the tool of a RAID controller: says what an invented controller has.
case "$*" in
list)
    cat <<'END'
Controllers found: 1
----------------------------------------------------------------------
Controller information
----------------------------------------------------------------------
   Controller ID             : Status, Slot, Mode, Name, SerialNumber, WWN
----------------------------------------------------------------------
   Controller 1:             : Optimal, Slot 2, Mixed, EXRAID 8i, EXRAID0001, 50000D1700000000

Command completed successfully.
END
    ;;
"getconfig 1 AD")
    cat <<'END'
Controllers found: 1
----------------------------------------------------------------------
Controller information
----------------------------------------------------------------------
   Controller Status                          : Optimal
   Controller Mode                            : Mixed
   Controller Model                           : EXRAID 8i
   Controller Serial Number                   : EXRAID0001
   Physical Slot                              : 2
   PCI Address (Domain:Bus:Device:Function)   : 0:5e:0:0
   --------------------------------------------------------
   Controller Version Information
   --------------------------------------------------------
   Firmware                                   : 4.21[0]
   Driver                                     : Linux 2.1.14

Command completed successfully.
END
    ;;
"getconfig 1 PD")
    cat <<'END'
Controllers found: 1
----------------------------------------------------------------------
Physical Device information
----------------------------------------------------------------------
   Channel #0:
      Device #0
         Device is a Hard drive
         State                                : Online
         Reported Location                    : Enclosure Direct Attached, Slot 0(Connector 0:CN0)
         Vendor                               : EXAMPLE
         Model                                : EXSAS-1200
         Firmware                             : SR05
         Serial number                        : exsas0001
      Device #1
         Device is a Hard drive
         State                                : Online
         Reported Location                    : Enclosure Direct Attached, Slot 1(Connector 0:CN0)
         Vendor                               : ATA
         Model                                : EXSSD-480
         Firmware                             : SD1.70
         Serial number                        : EXSSD0002
   Channel #2:
      Device #0
         Device is an Enclosure Services Device
         Vendor                               : EXAMPLE
         Model                                : Virtual SGPIO
         Firmware                             : 1.00

Command completed successfully.
END
    ;;
*)
    echo "Stand-in of arcconf, Version 2.99 (B00001)"
    ;;
esac
"""
