// The result codes of the system, by name. Each constant registers its text when it is initialised,
// so that the code can be turned into words wherever it ends up.
//
// The texts are fixed, odd spellings, leading, trailing and doubled blanks included (kept
// spelling). Deliberately not here: the codes of the update-error table (update_error_table.h),
// which carry no module number; those that scans use stand at the end as plain numbers.
#pragma once

#include <cstdint>

#include "common/result/result_code_registry.h"

// clang-format off
// Common.
inline const std::int32_t SUCCEED = ResultCodeRegistry::Register(0, 0, "Succeed.");
inline const std::int32_t GENERIC_FAILURE = ResultCodeRegistry::Register(0, 1, "Generic Failure.");
inline const std::int32_t INVALID_APPLICATION = ResultCodeRegistry::Register(0, 3, "Invalid application.");
inline const std::int32_t INVALID_COMMAND = ResultCodeRegistry::Register(0, 4, "Invalid command.");
inline const std::int32_t INVALID_PARAMETER = ResultCodeRegistry::Register(0, 5, "Invalid parameter.");
inline const std::int32_t FILE_NOT_EXIST = ResultCodeRegistry::Register(0, 6, "File doesn't exist.");
inline const std::int32_t INVALID_FILE = ResultCodeRegistry::Register(0, 7, "Invalid file.");
inline const std::int32_t CREATE_DIRECTORY_FAILED = ResultCodeRegistry::Register(0, 8, "Failed to create directory.");
inline const std::int32_t OPEN_FILE_FAILED = ResultCodeRegistry::Register(0, 9, "Failed to open file.");
inline const std::int32_t READ_FILE_FAILED = ResultCodeRegistry::Register(0, 10, "Failed to read file.");
inline const std::int32_t WRITE_FILE_FAILED = ResultCodeRegistry::Register(0, 11, "Failed to write file.");
inline const std::int32_t AUTHENTICATION_FAILED = ResultCodeRegistry::Register(0, 12, "Authentication failed.");
inline const std::int32_t CONNECTION_FAILED = ResultCodeRegistry::Register(0, 13, "Connection failed.");
inline const std::int32_t PING_FAILED = ResultCodeRegistry::Register(0, 14, "Ping failed.");
inline const std::int32_t UPLOAD_FAILED = ResultCodeRegistry::Register(0, 15, "Upload failed.");
inline const std::int32_t DOWNLOAD_FAILED = ResultCodeRegistry::Register(0, 16, "Download failed.");
inline const std::int32_t INTERNAL_ERROR = ResultCodeRegistry::Register(0, 17, "Internal error.");
inline const std::int32_t TIMEOUT = ResultCodeRegistry::Register(0, 18, "Timeout.");
inline const std::int32_t GET_BMC_ACCOUNT_VIA_KCS_FAILED = ResultCodeRegistry::Register(0, 19, "Failed to get BMC account via KCS.");
inline const std::int32_t LAN_OVER_USB_DISABLED = ResultCodeRegistry::Register(0, 21, "LAN-over-USB device is disabled on BMC side, please enable it manually.");
inline const std::int32_t BMC_INTERNAL_IP_CONFLICT = ResultCodeRegistry::Register(0, 22, "The BMC default internal IP conflicts with external machine, please correct the problem, and try again.");
inline const std::int32_t REBOOT_HOST_FAILED = ResultCodeRegistry::Register(0, 23, "Failed to reboot host system.");
inline const std::int32_t REBOOT_BMC_FAILED = ResultCodeRegistry::Register(0, 24, "Failed to reboot BMC.");
inline const std::int32_t FUNCTION_NOT_SUPPORTED = ResultCodeRegistry::Register(0, 25, "Function is not supported on target system.");
inline const std::int32_t LAN_OVER_USB_NOT_DETECTED = ResultCodeRegistry::Register(0, 26, "LAN-over-USB device is not detected, please make sure RNDIS is correctly installed.");
inline const std::int32_t BMC_INTERNAL_ERROR = ResultCodeRegistry::Register(0, 27, "BMC internal error.");
inline const std::int32_t NO_APPLICABLE_HARDWARE = ResultCodeRegistry::Register(0, 28, "No applicable hardware component found.");
inline const std::int32_t VESK_INTERNAL_ERROR = ResultCodeRegistry::Register(0, 29, "Vesk internal error.");
inline const std::int32_t ADMINISTRATOR_PERMISSION_NEEDED = ResultCodeRegistry::Register(0, 30, "Failed due to current command needs administrator permission, please switch to administrator user then try again.");
inline const std::int32_t NO_USBLAN_OR_HOST_IPV4 = ResultCodeRegistry::Register(0, 33, "No available USBLAN device or host IPv4 ip, Please confirm USBLAN device exists and check the USBLAN device's ipv4 protocl setting is enabled. ");
inline const std::int32_t UPDATE_FAILED_BY_ESXI = ResultCodeRegistry::Register(0, 34, "failed to update due to ESXI internal error.");
inline const std::int32_t TOLV_INTERNAL_ERROR = ResultCodeRegistry::Register(0, 35, "Tolv internal error.");
inline const std::int32_t VERIFY_CERTIFICATE_FAILED = ResultCodeRegistry::Register(0, 36, "Failed to verify the certificate/fingerprint for the connection(s) you specified");
inline const std::int32_t MANUALLY_QUIT = ResultCodeRegistry::Register(0, 37, "Manually quit Tarsel.");
inline const std::int32_t INVALID_FILE_FOLDER = ResultCodeRegistry::Register(0, 38, "Invalid file folder.");
inline const std::int32_t ENCRYPT_DECRYPT_FAILED = ResultCodeRegistry::Register(0, 39, "Failed to encrypt/decrypt.");
inline const std::int32_t NO_MATCHING_CREDENTIAL = ResultCodeRegistry::Register(0, 40, "Fail to find the matching credential.");
inline const std::int32_t NO_MATCHING_TOOL_PACKAGE = ResultCodeRegistry::Register(0, 41, "Fail to find the matching tool package for remote machine.");
inline const std::int32_t REMOTE_MACHINE_NOT_SUPPORTED = ResultCodeRegistry::Register(0, 42, "Remote operation not support this remote machine.");
inline const std::int32_t CREDENTIAL_FILE_NOT_FOUND = ResultCodeRegistry::Register(0, 43, "Could not find credential file.");
inline const std::int32_t REMOTEOS_PATH_NOT_EXIST = ResultCodeRegistry::Register(0, 44, "The path behind the option remoteos does not exist.");
inline const std::int32_t ATTENDED_MODE_CONFLICT = ResultCodeRegistry::Register(0, 45, "Attended or unattended mode conflict.");
inline const std::int32_t PASSPHRASE_ERROR = ResultCodeRegistry::Register(0, 46, "Passphrase error.");
inline const std::int32_t INTERRUPTED_BY_USER = ResultCodeRegistry::Register(0, 47, "Interrupted by user.");
inline const std::int32_t ENCRYPTED_FILE_NOT_EXIST = ResultCodeRegistry::Register(0, 48, "Encrypted file is not exist.");
inline const std::int32_t ENCRYPTED_FILE_INVALID = ResultCodeRegistry::Register(0, 49, "Encrypted file is invalid.");
inline const std::int32_t KCS_CONNECT_FAILED = ResultCodeRegistry::Register(0, 50, "Failed to connect KCS, if system in Enterprise Strict Mode, please change the mode, enable ipmi-over-lan and enable ipmi-over-kcs, then try this case again.");
inline const std::int32_t IPMI_PASSWORD_TOO_LONG = ResultCodeRegistry::Register(0, 51, "Unable to access IPMI service with a password over 20 characters according to IPMI standard.");
inline const std::int32_t NO_RESTFUL_SERVICE = ResultCodeRegistry::Register(0, 52, "There is no RESTful service for the target server.");
inline const std::int32_t INVALID_CONNECTION_FORMAT = ResultCodeRegistry::Register(0, 53, "Please check the format of input for connection parameter. For credential encrypt user, can't find your crypt.json.");
inline const std::int32_t PASSWORD_MUST_BE_CHANGED = ResultCodeRegistry::Register(0, 54, "The password provided for this account must be changed before access is granted.");
inline const std::int32_t CIM_OVER_HTTPS_DISABLED = ResultCodeRegistry::Register(0, 55, "BMC CIM Over HTTPS is disabled.");
inline const std::int32_t INVALID_TARGET_ADDRESS = ResultCodeRegistry::Register(0, 56, "Invalid BMC/Tolv/Vesk Address.");
inline const std::int32_t CHECK_BMU_REQUIREMENT_FAILED = ResultCodeRegistry::Register(0, 57, "Check BMU requirement failed.");
inline const std::int32_t SOME_TASKS_FAILED = ResultCodeRegistry::Register(0, 58, "One or more tasks failed.");
inline const std::int32_t SOME_TASKS_SKIPPED = ResultCodeRegistry::Register(0, 59, "One or more tasks skipped.");
inline const std::int32_t GET_RESTFUL_DATA_FAILED = ResultCodeRegistry::Register(0, 60, "Fail to get data from RESTful interface of BMC.");
inline const std::int32_t GET_REDFISH_ACCOUNT_FAILED = ResultCodeRegistry::Register(0, 61, "Failed to get Redfish account on AMD 1S.");
inline const std::int32_t SETUP_BMU_FILESYSTEM_FAILED = ResultCodeRegistry::Register(0, 62, "Failed to setup filesystem in Maintenance Mode OS.");
inline const std::int32_t IPMI_SESSION_FAILED = ResultCodeRegistry::Register(0, 63, "Unable to establish IPMI v2 / RMCP+ session,it may be caused by authentication failure or insufficient privilege level.");
inline const std::int32_t ENABLE_VESK_IPMI_FAILED = ResultCodeRegistry::Register(0, 64, "Failed to enable Vesk IPMI over LAN, please confirm whether the target system supports.");
inline const std::int32_t STRICT_SECURITY_MODE_NOT_SUPPORTED = ResultCodeRegistry::Register(0, 65, "Function not supported on target system, the Security Mode of target system is Enterprise Strict mode, please change the mode and try this case again.");
inline const std::int32_t NO_CIM_SERVICE = ResultCodeRegistry::Register(0, 66, "There is no CIM service for the target server.");
inline const std::int32_t POWER_ON_PASSWORD_ENABLED = ResultCodeRegistry::Register(0, 67, "Function isn't supported when power on password is enable.");
inline const std::int32_t UNSUPPORTED_INTERFACE = ResultCodeRegistry::Register(0, 68, "Unsupported interface to the target device.");
inline const std::int32_t INTERPROCESS_CONFLICT = ResultCodeRegistry::Register(0, 69, "Interprocess conflict, maybe the desired resource is currently being occupied by another process");
inline const std::int32_t NO_AVAILABLE_USER_ID = ResultCodeRegistry::Register(0, 70, "There are no available user IDs to create a new user. Please delete a user and try again.");

// Update and packages.
inline const std::int32_t UPDATE_NO_APPLICABLE_HARDWARE_OR_NEWER_INSTALLED = ResultCodeRegistry::Register(1, 82, "No applicable hardware component found or same/newer version of applicable packages have already installed");
inline const std::int32_t UPDATE_INVALID_FIXID = ResultCodeRegistry::Register(1, 83, "The specified fixid(s) is invalid.");
inline const std::int32_t UPDATE_BMC_SPACE_NOT_ENOUGH = ResultCodeRegistry::Register(1, 84, "Current BMC avaliable space not enough.");
inline const std::int32_t UPDATE_COMPRESS_BUNDLE_FAILED = ResultCodeRegistry::Register(1, 85, "Compress bundle zip failed.");
inline const std::int32_t UPDATE_STAGED = ResultCodeRegistry::Register(1, 86, "Staged");
inline const std::int32_t UPDATE_VERIFY_BUNDLE_FAILED = ResultCodeRegistry::Register(1, 87, "Verify bundle failed.");
inline const std::int32_t UPDATE_INCOMPATIBLE_XML_RESULT = ResultCodeRegistry::Register(1, 88, "Incompatible compare/query/scan xml result.");
inline const std::int32_t UPDATE_CURRENT_OR_NEWER_INSTALLED = ResultCodeRegistry::Register(1, 89, "Current or newer version of applicable packages have already installed.");
inline const std::int32_t UPDATE_BMU_BOOTING_OR_ABNORMAL = ResultCodeRegistry::Register(1, 96, "Maintenance Mode OS is in booting progress or previous Maintenance Mode OS exit abnormally, you can use command \"./Tarsel restorebmu --bmc <BMC connection information>\" to force finish it.");
inline const std::int32_t UPDATE_INVALID_FIRMWARE_IMAGE = ResultCodeRegistry::Register(1, 97, "Invalid or corrupted firmware image.");
inline const std::int32_t UPDATE_NO_RPM_FOR_OS_VERSION = ResultCodeRegistry::Register(1, 98, "Fix package does not contain RPMs for this version of the OS.");
inline const std::int32_t UPDATE_REMOTEOS_NOT_SUPPORTED_ON_WINDOWS = ResultCodeRegistry::Register(1, 99, "The option --remoteos is not supported on Windows platform.");
inline const std::int32_t UPDATE_PACKAGE_SIZES_DIFFER = ResultCodeRegistry::Register(1, 100, "Packages exist both local and sftp server, but in different sizes,please check them.");
inline const std::int32_t UPDATE_DOWNLOAD_SOME_PACKAGES_FAILED = ResultCodeRegistry::Register(1, 101, "Failed to download some update packages.");
inline const std::int32_t UPDATE_UNRECOVERABLE_ERROR = ResultCodeRegistry::Register(1, 102, "An unrecoverable error is met.");
inline const std::int32_t UPDATE_CONNECT_REPOSITORY_FAILED = ResultCodeRegistry::Register(1, 103, "Failed to connect to the repository.");
inline const std::int32_t UPDATE_NO_APPLICABLE_UPDATE = ResultCodeRegistry::Register(1, 104, "No applicable update available on the repository for specified machine-type/OS.");
inline const std::int32_t UPDATE_PACKAGE_NOT_FOUND = ResultCodeRegistry::Register(1, 105, "Update package not found.");
inline const std::int32_t UPDATE_MULTIPLE_PACKAGES_FAILED = ResultCodeRegistry::Register(1, 107, "Multiple packages failed to be flashed. Check flash status xml for further information.");
inline const std::int32_t UPDATE_BACKUP_BANK_NOT_EXIST = ResultCodeRegistry::Register(1, 108, "Backup bank does not exist.");
inline const std::int32_t LEGACY_SYSTEM_NOT_SUPPORTED = ResultCodeRegistry::Register(1, 109, "You are running against an Orvane system. But the current command is not supported.");
inline const std::int32_t UPDATE_NO_PACKAGE_NEEDED = ResultCodeRegistry::Register(1, 110, "No package needs update.");
inline const std::int32_t GET_OS_TYPE_FAILED = ResultCodeRegistry::Register(1, 111, "Failed to get OS type.");
inline const std::int32_t UPDATE_OS_NOT_SUPPORTED = ResultCodeRegistry::Register(1, 112, "Current Operating System is not supported.");
inline const std::int32_t UPDATE_INVALID_CA_CERTIFICATES = ResultCodeRegistry::Register(1, 113, "Failed to connect to the remote server due to the SSL CA certificates are invalid.");
inline const std::int32_t UPDATE_BOOT_BMU_FAILED = ResultCodeRegistry::Register(1, 114, "Failed to boot into Maintenance Mode OS.");
inline const std::int32_t UPDATE_RDOC_SPACE_NOT_ENOUGH = ResultCodeRegistry::Register(1, 115, "BMC RDOC space not enough, Please remove other mounted device from BMC's RDOC.");
inline const std::int32_t UPDATE_PREPARE_ENVIRONMENT_FAILED = ResultCodeRegistry::Register(1, 116, "Failed to prepare update environment.");
inline const std::int32_t UPDATE_IN_PROGRESS = ResultCodeRegistry::Register(1, 117, "Another update in progress.");
inline const std::int32_t UPDATE_INVALID_TARGET_STATUS = ResultCodeRegistry::Register(1, 118, "Target system is not in a valid status for update.");
inline const std::int32_t UPDATE_DOWNGRADE_DISALLOWED = ResultCodeRegistry::Register(1, 119, "Current BMC setting disallows downgrade.");
inline const std::int32_t UPDATE_OLDER_THAN_MINIMUM = ResultCodeRegistry::Register(1, 120, "The candidate update is older than the allowed minimum version.");
inline const std::int32_t UPDATE_DEVICE_METHOD_NOT_SUPPORTED = ResultCodeRegistry::Register(1, 121, "Failed to update due to this device doesn't support current method");
inline const std::int32_t UPDATE_PACKAGE_METHOD_NOT_SUPPORTED = ResultCodeRegistry::Register(1, 122, "Failed to update due to this package doesn't support current method");
inline const std::int32_t UPDATE_BMC_VERSION_TOO_OLD = ResultCodeRegistry::Register(1, 123, "Current BMC version doesn't support this package, Please upgrade BMC to latest and retry.");
inline const std::int32_t UPDATE_NOT_IN_EFFECT = ResultCodeRegistry::Register(1, 124, "Update doesn't take effect after successful flash.");
inline const std::int32_t UPDATE_PACKAGE_SKIPPED = ResultCodeRegistry::Register(1, 125, "Skip updating this package.");

// File upload and transfer.
inline const std::int32_t UPLOAD_COLLECT_FFDC_FAILED = ResultCodeRegistry::Register(2, 116, "Succeeded running inventory for the target system, however failed to collect FFDC or Service Data vimLog.");
inline const std::int32_t UPLOAD_PART_OF_FILES_FAILED = ResultCodeRegistry::Register(2, 117, "Failed to upload part of files.");
inline const std::int32_t UPLOAD_IDENTIFICATION_NEEDED = ResultCodeRegistry::Register(2, 118, "You should input the pair of machine type with \"--mt\" and serial number \"--sn\" or just casenumber with \"--cn\" .");
inline const std::int32_t UPLOAD_DIRECTORY_FAILED = ResultCodeRegistry::Register(2, 119, "Failed to upload directory.");
inline const std::int32_t UPLOAD_CURL_HTTP_RESPONSE_ERROR = ResultCodeRegistry::Register(2, 120, "Libcurl error: http response error.");
inline const std::int32_t UPLOAD_CURL_UNKNOWN_ERROR = ResultCodeRegistry::Register(2, 121, "Libcurl error: unknow error.");
inline const std::int32_t UPLOAD_CURL_READ_LOCAL_FILE_ERROR = ResultCodeRegistry::Register(2, 122, "Libcurl error: Read local file error.");
inline const std::int32_t UPLOAD_CURL_HTTP_RETURNS_ERRORS = ResultCodeRegistry::Register(2, 123, "Libcurl error: Http returns errors.");
inline const std::int32_t UPLOAD_CURL_CONNECT_FAILED = ResultCodeRegistry::Register(2, 124, "Libcurl error: Can't connect to remote server or proxy.");
inline const std::int32_t UPLOAD_CURL_UNSUPPORTED_PROTOCOL = ResultCodeRegistry::Register(2, 125, "Libcurl error: Unsupported protocol.");

// Diagnostics.
inline const std::int32_t DIAGS_ITEM_NOT_RUN = ResultCodeRegistry::Register(3, 120, "Specified item not run, no need to get result.");
inline const std::int32_t DIAGS_TIMEOUT = ResultCodeRegistry::Register(3, 121, "Timeout to complete the diags.");
inline const std::int32_t DIAGS_CONNECT_FAILED = ResultCodeRegistry::Register(3, 122, "Failed to connect target system, please check the Rest-Over-HTTPS or IPMI-Over-LAN on the target system.");
inline const std::int32_t DIAGS_GET_RESULT_FILE_FAILED = ResultCodeRegistry::Register(3, 123, "Failed to get result file.");
inline const std::int32_t DIAGS_GET_STATUS_FAILED = ResultCodeRegistry::Register(3, 124, "Failed to get status of diagnostic.");
inline const std::int32_t DIAGS_TRIGGER_FAILED = ResultCodeRegistry::Register(3, 125, "Failed to trigger diagnostic.");

// Configuration settings.
inline const std::int32_t CONFIG_LOADDEFAULT_FAILED = ResultCodeRegistry::Register(4, 88, "loaddefault fail by denendency check");
inline const std::int32_t CONFIG_SETTING_NOT_AVAILABLE = ResultCodeRegistry::Register(4, 89, "Currently the setting is not available.");
inline const std::int32_t CONFIG_REDFISH_NEEDED = ResultCodeRegistry::Register(4, 90, "Current protocol does not support this function, please add '--redfish' to try it again.");
inline const std::int32_t CONFIG_SHOW_SETTINGS_FAILED = ResultCodeRegistry::Register(4, 91, "One or more setttings failed to show.");
inline const std::int32_t CONFIG_INVALID_DATA_FIELD = ResultCodeRegistry::Register(4, 92, "Invalid data field.");
inline const std::int32_t CONFIG_BATCH_MODE_SUGGESTED = ResultCodeRegistry::Register(4, 93, "Fail to change the setting. The setting is suggested to change in batch mode with provided password.");
inline const std::int32_t CONFIG_INVALID_CURRENT_VALUE = ResultCodeRegistry::Register(4, 95, "The setting has invalid current value.");
inline const std::int32_t CONFIG_OPERATION_UNAVAILABLE = ResultCodeRegistry::Register(4, 96, "Operation is unavailable now, please wait a moment then retry.");
inline const std::int32_t CONFIG_CERTIFICATE_NOT_EXIST = ResultCodeRegistry::Register(4, 97, "The certificate does not exist.");
inline const std::int32_t CONFIG_DEFAULT_VALUE_EMPTY = ResultCodeRegistry::Register(4, 98, "The default value is empty.");
inline const std::int32_t CONFIG_INVALID_EMAIL_ADDRESS = ResultCodeRegistry::Register(4, 99, "Invalid destination Email address");
inline const std::int32_t CONFIG_FIRMWARE_VERSION_NOT_SUPPORTED = ResultCodeRegistry::Register(4, 100, "The current version of firmware does not support this function, please update your firmware to latest may resolve this issue.");
inline const std::int32_t CONFIG_REDFISH_INTERNAL_ERROR = ResultCodeRegistry::Register(4, 101, "Redfish internal error.");
inline const std::int32_t CONFIG_PARSE_BMC_DATA_FAILED = ResultCodeRegistry::Register(4, 102, "Failed to parse BMC data.");
inline const std::int32_t CONFIG_BMC_DATA_ERROR = ResultCodeRegistry::Register(4, 103, "BMC data error.");
inline const std::int32_t CONFIG_COMMAND_NOT_SUPPORTED = ResultCodeRegistry::Register(4, 104, "The command is not supported on current system.");
inline const std::int32_t CONFIG_QUERY_BMC_DATA_FAILED = ResultCodeRegistry::Register(4, 105, "Fail to query data from BMC.");
inline const std::int32_t CONFIG_INVALID_CERTIFICATE_TEMPLATE = ResultCodeRegistry::Register(4, 106, "Invalid certificate template file.");
inline const std::int32_t CONFIG_RESTORE_FAILED = ResultCodeRegistry::Register(4, 107, "Failed to restore.");
inline const std::int32_t CONFIG_REPLICATE_FAILED = ResultCodeRegistry::Register(4, 108, "Failed to replicate.");
inline const std::int32_t CONFIG_NO_PRIVILEGE = ResultCodeRegistry::Register(4, 109, "No privilege to complete this operation.");
inline const std::int32_t CONFIG_PASSWORD_PREVIOUSLY_USED = ResultCodeRegistry::Register(4, 110, "Previously used password are not allowed, please try another.");
inline const std::int32_t CONFIG_PASSWORD_POLICY_NOT_MET = ResultCodeRegistry::Register(4, 111, "The password does not meet password policy requirements.");
inline const std::int32_t CONFIG_USER_ALREADY_EXISTS = ResultCodeRegistry::Register(4, 112, "User already exists.");
inline const std::int32_t CONFIG_BATCH_COMMAND_FAILED = ResultCodeRegistry::Register(4, 113, "Failed to run commands when executing batch command.");
inline const std::int32_t CONFIG_BMC_NO_PRIVILEGE = ResultCodeRegistry::Register(4, 114, "BMC internal error: No privilege to complete this operation.");
inline const std::int32_t CONFIG_INVALID_SETTING_VALUE = ResultCodeRegistry::Register(4, 115, "Invalid setting value.");
inline const std::int32_t CONFIG_SHOW_INSTANCE_FAILED = ResultCodeRegistry::Register(4, 116, "Failed to show the instance setting. The instance should be created at first.");
inline const std::int32_t CONFIG_INVALID_BATCH_COMMANDS = ResultCodeRegistry::Register(4, 117, "Invalid commands in the batch file.");
inline const std::int32_t CONFIG_RECONNECT_BMC_FAILED = ResultCodeRegistry::Register(4, 118, "Failed to reconnect to BMC after the command had executed successfully. You could try another method to check the result.");
inline const std::int32_t CONFIG_CERTIFICATE_OPERATION_FAILED = ResultCodeRegistry::Register(4, 119, "Failed to generate,export,import,delete certificates.");
inline const std::int32_t CONFIG_CHANGE_SETTING_FAILED = ResultCodeRegistry::Register(4, 120, "Failed to change the setting.");
inline const std::int32_t CONFIG_GET_INFORMATION_FAILED = ResultCodeRegistry::Register(4, 121, "Failed to get information.");
inline const std::int32_t CONFIG_RECORDKEY_NEEDED = ResultCodeRegistry::Register(4, 122, "The recordkey of instance should be created at first.");
inline const std::int32_t CONFIG_SETTING_NOT_FOUND = ResultCodeRegistry::Register(4, 123, "Could not find the setting.");
inline const std::int32_t CONFIG_BMC_INTERNAL_ERROR = ResultCodeRegistry::Register(4, 124, "BMC internal error.");
inline const std::int32_t CONFIG_RUN_COMMAND_FAILED = ResultCodeRegistry::Register(4, 125, "Failed to run command.");

// LAN-over-USB.
inline const std::int32_t USBLAN_NON_ADMINISTRATOR = ResultCodeRegistry::Register(10, 116, "Failed to config LAN-over-USB device with non-administrator user.");
inline const std::int32_t USBLAN_DRIVER_NOT_DETECTED = ResultCodeRegistry::Register(10, 117, "BMC Lan Over USB device driver is not detected.");
inline const std::int32_t USBLAN_CHANGE_STATUS_FAILED = ResultCodeRegistry::Register(10, 118, "Failed to change BMC lan over USB device status.");
inline const std::int32_t USBLAN_NODE_OUT_OF_RANGE = ResultCodeRegistry::Register(10, 119, "BMC Lan over USB node number is out of range.");
inline const std::int32_t USBLAN_DEVICE_NOT_DETECTED = ResultCodeRegistry::Register(10, 120, "No BMC Lan over USB device detected.");
inline const std::int32_t USBLAN_DEVICE_CONFLICT = ResultCodeRegistry::Register(10, 121, "BMC Lan over USB device conflict.");
inline const std::int32_t USBLAN_DEVICE_DISABLED = ResultCodeRegistry::Register(10, 122, "BMC Lan over USB device is disabled.");
inline const std::int32_t USBLAN_DEVICE_ENABLED = ResultCodeRegistry::Register(10, 123, "BMC Lan over USB device is enabled.");
inline const std::int32_t USBLAN_SEGMENT_CONFLICT = ResultCodeRegistry::Register(10, 124, "IP network segment of Lan Over USB host side and BMC side conflict.");
inline const std::int32_t USBLAN_INVALID_IP_ADDRESS = ResultCodeRegistry::Register(10, 125, "Invalid IP address.");

// Logs.
inline const std::int32_t LOG_NO_LOGS = ResultCodeRegistry::Register(17, 124, "There are no logs.");
inline const std::int32_t LOG_GET_FAILED = ResultCodeRegistry::Register(17, 125, "Failed to get logs.");

// Failure data collection.
inline const std::int32_t FFDC_CONNECT_VESK_REST_FAILED = ResultCodeRegistry::Register(18, 113, "Failed to connect to the Vesk REST service, if the target system is Vesk1 or Vesk2, please specify \"--tftp\".");
inline const std::int32_t FFDC_AMD_REMOTE_ONLY = ResultCodeRegistry::Register(18, 114, "AMD FFDC can only be downloaded remotely not inside a server's host OS.");
inline const std::int32_t FFDC_AMD_DOWNLOAD_FAILED = ResultCodeRegistry::Register(18, 115, "Download AMD FFDC failed.");
inline const std::int32_t FFDC_AMD_UPLOAD_NOT_SUPPORTED = ResultCodeRegistry::Register(18, 117, "Download AMD FFDC error : sftp or tftp upload not supported.");
inline const std::int32_t FFDC_UPLOAD_SFTP_FAILED = ResultCodeRegistry::Register(18, 118, "FFDC log has been downloaded to local, but failed to upload to SFTP server.");
inline const std::int32_t FFDC_GET_LOG_FAILED = ResultCodeRegistry::Register(18, 119, "Failed to get FFDC log. ");
inline const std::int32_t FFDC_DOWNLOAD_FROM_SERVER_FAILED = ResultCodeRegistry::Register(18, 120, "FFDC log has been uploaded to the specified FTP/TFTP server, but failed to download FFDC log from FTP/TFTP server. ");
inline const std::int32_t FFDC_TFTP_SERVER_NOT_FOUND = ResultCodeRegistry::Register(18, 121, "Download Vesk FFDC error: tftp server doese not found.");
inline const std::int32_t FFDC_TAR_FILES_FAILED = ResultCodeRegistry::Register(18, 122, "Download Vesk FFDC error: tar ffdc files failed");
inline const std::int32_t FFDC_QUERY_FAILED = ResultCodeRegistry::Register(18, 123, "Download Vesk FFDC error: query failed");
inline const std::int32_t FFDC_START_DUMP_FAILED = ResultCodeRegistry::Register(18, 124, "Download Vesk FFDC error: start dump failed.");
inline const std::int32_t FFDC_SETUP_ENVIRONMENT_FAILED = ResultCodeRegistry::Register(18, 125, "Download Vesk FFDC error: setup environment failed.");

// Switch health check.
inline const std::int32_t SWITCH_EHCM_NOT_SUPPORTED = ResultCodeRegistry::Register(20, 125, "Switch does not support EHCM or the Tolv build is not supported to check EHCM.");

// RAID configuration.
inline const std::int32_t RAID_ONLY_VOLUME_ENCRYPTION = ResultCodeRegistry::Register(24, 104, "Tarsel can only enable Volume Encryption, cannot perform other operations.");
inline const std::int32_t RAID_NO_FIRMWARE_DEVICE_ORDER = ResultCodeRegistry::Register(24, 105, "There are no controllers with \"Firmware Device Order\" function.");
inline const std::int32_t RAID_FUNCTION_NOT_SUPPORTED = ResultCodeRegistry::Register(24, 106, "Function isn't supported on the target device.");
inline const std::int32_t RAID_INCORRECT_DG_OPTION = ResultCodeRegistry::Register(24, 107, "Incorrect use of '--dg' option.");
inline const std::int32_t RAID_NO_DISKS_TO_MAKEJBOD = ResultCodeRegistry::Register(24, 108, "There are no disks to makejbod.");
inline const std::int32_t RAID_NO_DISKS_TO_MAKEGOOD = ResultCodeRegistry::Register(24, 109, "There are no disks to makegood.");
inline const std::int32_t RAID_NO_CONTAINERS = ResultCodeRegistry::Register(24, 112, "There are no containers.");
inline const std::int32_t RAID_RSTE_NOT_SUPPORTED = ResultCodeRegistry::Register(24, 113, "Current system not support Intel RSTe software raid.");
inline const std::int32_t RAID_DISK_STATE_ERROR = ResultCodeRegistry::Register(24, 114, "Disk state error.");
inline const std::int32_t RAID_NO_DISKS = ResultCodeRegistry::Register(24, 115, "There are no disks of the target device.");
inline const std::int32_t RAID_M2_NOT_SUPPORTED = ResultCodeRegistry::Register(24, 116, "RAID config doesn't support this command on M.2 SSD.");
inline const std::int32_t RAID_ALL_TARGETS_FAILED = ResultCodeRegistry::Register(24, 117, "The operation fails on all targets.");
inline const std::int32_t RAID_NO_CONTROLLERS = ResultCodeRegistry::Register(24, 118, "There are no controllers.");
inline const std::int32_t RAID_SOME_TARGETS_FAILED = ResultCodeRegistry::Register(24, 119, "The operation fails on some targets.");
inline const std::int32_t RAID_NO_VOLUMES = ResultCodeRegistry::Register(24, 120, "There are no volumes.");
inline const std::int32_t RAID_OPERATE_FAILED = ResultCodeRegistry::Register(24, 121, "RAID config fails to operate.");
inline const std::int32_t RAID_INI_FILE_ERROR = ResultCodeRegistry::Register(24, 122, "RAID config ini file error.");
inline const std::int32_t RAID_NO_POLICY_TO_SAVE = ResultCodeRegistry::Register(24, 123, "There is no raid config policy to save.");
inline const std::int32_t RAID_DEVICE_NOT_EXIST = ResultCodeRegistry::Register(24, 124, "The target device does not exist.");

// Remote physical presence.
inline const std::int32_t RPP_DISABLED = ResultCodeRegistry::Register(35, 122, "Remote Physical Presence is disabled on the target system.");
inline const std::int32_t RPP_GET_STATUS_FAILED = ResultCodeRegistry::Register(35, 123, "Failed to get status of Remote Physical Presence.");
inline const std::int32_t RPP_DEASSERT_FAILED = ResultCodeRegistry::Register(35, 124, "Failed to De-Assert Remote Physical Presence.");
inline const std::int32_t RPP_ASSERT_FAILED = ResultCodeRegistry::Register(35, 125, "Failed to Assert Remote Physical Presence.");

// Disk health data.
inline const std::int32_t SMART_CONNECT_REST_FAILED = ResultCodeRegistry::Register(44, 121, "Failed to connect BMC REST API.");
inline const std::int32_t SMART_GET_SYSTEM_STATUS_FAILED = ResultCodeRegistry::Register(44, 122, "Failed to get system status.");
inline const std::int32_t SMART_GET_RESULT_FAILED = ResultCodeRegistry::Register(44, 123, "Failed to get SMART data result.");
inline const std::int32_t SMART_BOOT_TO_SETUP_FAILED = ResultCodeRegistry::Register(44, 124, "Failed to BOOT to BIOS setup.");
inline const std::int32_t SMART_DATA_UNAVAILABLE = ResultCodeRegistry::Register(44, 125, "Unable to get SMART Data, Please confirm the BMC firmware supported.");

// Service data log.
inline const std::int32_t SERVICE_DATA_NOT_SUPPORTED = ResultCodeRegistry::Register(58, 123, "Service Data Log is not supported on current system. ");
inline const std::int32_t SERVICE_DATA_GET_LOG_FAILED = ResultCodeRegistry::Register(58, 124, "Failed to get Service Data Log. ");
inline const std::int32_t SERVICE_DATA_DOWNLOAD_FAILED = ResultCodeRegistry::Register(58, 125, "Service Data Log has been uploaded to the specified FTP/TFTP server, but failed to download Service Data log from FTP/TFTP server. ");

// Out-of-band-only commands.
inline const std::int32_t OOB_BMC_PARAMETER_REQUIRED = ResultCodeRegistry::Register(61, 122, "Current command is only supported by OOB mode, so the parameter '--bmc' is required. ");
inline const std::int32_t OOB_UEFI_PASSWORD_INVALID = ResultCodeRegistry::Register(61, 123, "UEFI PAP(UEFI admin password) is invalid.");
inline const std::int32_t OOB_CHASSIS_POWER_OFF_NEEDED = ResultCodeRegistry::Register(61, 124, "The Chassis requires to be powered off to perform this request. ");
inline const std::int32_t OOB_PRIVILEGE_NOT_SUFFICIENT = ResultCodeRegistry::Register(61, 125, "Current user do not have sufficient privilege to execute the command. ");

// Network configuration.
inline const std::int32_t NETWORK_MULTIPLE_INTERFACES = ResultCodeRegistry::Register(62, 123, "More than one interfaces were founded,please check network configure.");
inline const std::int32_t NETWORK_ADD_ADDRESS_ERROR = ResultCodeRegistry::Register(62, 124, "Add IP address error.");
inline const std::int32_t NETWORK_RESTORE_ERROR = ResultCodeRegistry::Register(62, 125, "Restore network configure error.");

// Network configuration (second copy).
inline const std::int32_t NETWORK_SECOND_ADD_ADDRESS_ERROR = ResultCodeRegistry::Register(63, 124, "Add IP address error.");
inline const std::int32_t NETWORK_SECOND_RESTORE_ERROR = ResultCodeRegistry::Register(63, 125, "Restore network configure error.");

// UEFI password.
inline const std::int32_t UEFI_CHANGE_PASSWORD_FAILED = ResultCodeRegistry::Register(64, 122, "Failed to change UEFI password.");
inline const std::int32_t UEFI_PASSWORDS_BOTH_EMPTY = ResultCodeRegistry::Register(64, 123, "The old password and new password can not both be empty.");
inline const std::int32_t UEFI_NEW_PASSWORD_FORMAT_INCORRECT = ResultCodeRegistry::Register(64, 124, "The new password format is incorrect.");
inline const std::int32_t UEFI_OLD_PASSWORD_INCORRECT = ResultCodeRegistry::Register(64, 125, "The old password is incorrect.");

// clang-format on

// Codes of the update-error table: not registered.
inline constexpr std::int32_t ESXI_INTERNAL_ERROR = 0x62B;
inline constexpr std::int32_t GET_MACHINE_TYPE_FAILED = 0x6D2;
inline constexpr std::int32_t GET_FIRMWARE_INFO_FAILED = 0x6D3;
