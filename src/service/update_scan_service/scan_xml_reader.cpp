#include <algorithm>
#include <array>
#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <charconv>
#include <exception>
#include <fstream>
#include <iostream>
#include <locale>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

#include "common/files/file_path.h"
#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/scan_log_source.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/xml_nesting.h"

namespace service {

namespace {

using boost::property_tree::ptree;
using boost::property_tree::xml_parser_error;
using Tags = SerializeScanReport;

// A scan file nests five levels, its inventory form six; the rest is room for foreign elements. The
// parser needs a few stack frames a level.
constexpr std::size_t kMaxNesting = 256;

constexpr int kLogError = 1;
constexpr int kLogDetail = 4;

// Lets the parser read a text that is already in memory, without another copy.
class TextBuffer : public std::streambuf {
  public:
    explicit TextBuffer(std::string& text) {
        setg(text.data(), text.data(), text.data() + text.size());
    }
};

bool IsRegularFile(const std::string& file_name) {
    boost::system::error_code error;
    return boost::filesystem::is_regular_file(
        boost::filesystem::path(Vantix::FilePath(file_name).native()), error);
}

// Throws the parser's own errors, so that their texts read alike wherever they come from.
std::string ReadBytes(const std::string& file_name) {
    std::ifstream file(Vantix::FilePath(file_name), std::ios::binary);
    if (!file) throw xml_parser_error("cannot open file", file_name, 0);
    std::string bytes;
    std::array<char, 65536> block;
    do {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        bytes.append(block.data(), static_cast<std::size_t>(file.gcount()));
    } while (file);
    if (file.bad()) throw xml_parser_error("read error", file_name, 0);
    return bytes;
}

void RefuseDeepNesting(std::string_view xml, const std::string& file_name) {
    const auto offset = detail::FindElementDeeperThan(xml, kMaxNesting);
    if (!offset) return;
    const auto before = xml.substr(0, *offset);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    throw xml_parser_error("elements are nested too deeply", file_name,
                           static_cast<unsigned long>(line));
}

// No parser flags: texts are kept verbatim and comments as child nodes.
void ParseFile(const std::string& file_name, ptree& tree) {
    std::string bytes = ReadBytes(file_name);
    RefuseDeepNesting(bytes, file_name);
    TextBuffer buffer(bytes);
    std::istream stream(&buffer);
    try {
        boost::property_tree::read_xml(stream, tree);
    } catch (const xml_parser_error& error) {
        throw xml_parser_error(error.message(), file_name, error.line());
    }
}

// The inventory file keeps the same tree inside a wrapper element.
void UnwrapInventory(ptree& tree) {
    const auto wrapper = tree.find(Tags::TAG_TARSEL);
    if (wrapper == tree.not_found()) {
        Vantix::Log(kLogDetail, kSerializeLogSource, __LINE__).Stream()
            << "No tarsel tag has found, it is tarsel scan xml.";
        return;
    }
    ptree content;
    content.swap(wrapper->second);
    tree.swap(content);
    Vantix::Log(kLogDetail, kSerializeLogSource, __LINE__).Stream()
        << "Tarsel tag has found, it is inventory xml.";
}

// Files written before the key existed are still loaded.
void ReadBmcType(const ptree& tree, UpdateScanReport& report) {
    const auto bmc_type = tree.get_optional<std::string>(Tags::TAG_BMC_TYPE);
    report.SetBmcType(bmc_type.value_or(""));
    if (bmc_type) return;
    Vantix::Log(kLogError, kSerializeLogSource, __LINE__).Stream()
        << "Failed to get BMC Type from scanxml, please use tarsel to do scan again.";
}

// The whole text as a number, white space around it allowed; throws the tree's conversion error.
// Plain digits, the usual case, are read directly; the tree's own conversion sets up a stream.
int ToInt(const ptree& node) {
    const std::string& text = node.data();
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size()) return value;

    using Translator = boost::property_tree::stream_translator<char, std::char_traits<char>,
                                                               std::allocator<char>, int>;
    return node.get_value<int>(Translator(std::locale::classic()));
}

void ReadHeader(const ptree& tree, UpdateScanReport& report) {
    if (const auto text = tree.get_optional<std::string>(Tags::TAG_SWITCHDOWNSTREAM)) {
        report.SetSwitchDownstreamDevices(*text);
    }
    if (const auto text = tree.get_optional<std::string>(Tags::TAG_BMCRELEASENAME)) {
        report.SetBmcReleaseName(*text);
    }
    report.SetXmlVersion(tree.get<std::string>(Tags::TAG_XMLVERSION));
    report.SetMT(tree.get<std::string>(Tags::TAG_MT));
    report.SetOS(tree.get<std::string>(Tags::TAG_OS));
    report.SetOSMinorVersion(tree.get<std::string>(Tags::TAG_OS_MINVERSION));
    report.SetArch(tree.get<std::string>(Tags::TAG_ARCH));
    report.SetScope(tree.get<std::string>(Tags::TAG_SN));
    report.SetIsPartition(ToInt(tree.get_child(Tags::TAG_ISPARTITION)));
    report.SetScanCount(ToInt(tree.get_child(Tags::TAG_TOTAL)));
}

// Texts are moved out of the tree, which is thrown away: they would be copied twice otherwise.
std::string TakeRequired(ptree& package, const std::string& tag) {
    const auto found = package.find(tag);
    // The second look-up raises the tree's own error, whose text names the tag.
    if (found == package.not_found()) return package.get_child(tag).data();
    return std::move(found->second.data());
}

std::string TakeOptional(ptree& package, const std::string& tag) {
    const auto found = package.find(tag);
    return found != package.not_found() ? std::move(found->second.data()) : std::string();
}

// Files of several generations: an older key that wins where it is present, words instead of
// digits, or nothing at all.
std::string TakeAgentlessSupport(ptree& package, const std::string& software_id) {
    const bool has_old_key = package.find(Tags::TAG_PLDM_OLD) != package.not_found();
    std::string text = TakeOptional(package, has_old_key ? Tags::TAG_PLDM_OLD : Tags::TAG_PLDM);
    if (text == "Supported") return "1";
    if (text == "Not Supported") return "0";
    if (text.empty()) return detail::IsAgentlessComponent(software_id) ? "1" : "0";
    return text;
}

UpdateScanItem TakeItem(ptree& package) {
    UpdateScanItem item;
    item.softwareId = TakeRequired(package, Tags::TAG_SOFTWAREID);
    item.version = TakeRequired(package, Tags::TAG_VERSION);
    item.classification = TakeRequired(package, Tags::TAG_CLASSIFICATION);
    item.description = TakeRequired(package, Tags::TAG_DESCRIPTION);
    item.name = TakeRequired(package, Tags::TAG_NAME);
    const auto has_device = package.find(Tags::TAG_HASDEVICE);
    if (has_device != package.not_found()) item.hasDevice = ToInt(has_device->second);
    item.instanceId = TakeOptional(package, Tags::TAG_INSTANCEID);
    item.slotNum = TakeOptional(package, Tags::TAG_SLOTNUM);
    item.slotType = TakeOptional(package, Tags::TAG_SLOTTYPE);
    item.pldm = TakeAgentlessSupport(package, item.softwareId);
    return item;
}

// Any child is a package, whatever its name. Each leaves the tree as soon as it is read, while it
// is still in the processor's cache.
void TakePackages(ptree& packages, UpdateScanReport& report) {
    while (!packages.empty()) {
        report.PushScanItem(TakeItem(packages.front().second));
        packages.pop_front();
    }
}

int TakeContent(ptree& tree, UpdateScanReport& report) {
    try {
        ReadHeader(tree, report);
        TakePackages(tree.get_child(Tags::TAG_PACKAGES), report);
        return SUCCEED;
    } catch (const std::exception& error) {
        std::cout << error.what() << std::endl;
        return INVALID_FILE;
    }
}

}  // namespace

int SerializeScanReport::LoadFromXml(const std::string& fileName, UpdateScanReport& report) {
    if (!IsRegularFile(fileName)) {
        const std::string text = fileName + " does not exist.";
        Vantix::Log(kLogError, kSerializeLogSource, __LINE__).Stream() << text;
        std::cout << text << std::endl;
        return FILE_NOT_EXIST;
    }
    ptree tree;
    try {
        ParseFile(fileName, tree);
    } catch (const std::exception& error) {
        const std::string text = error.what();
        Vantix::Log(kLogError, kSerializeLogSource, __LINE__).Stream() << text;
        const bool cannot_open = text.find("cannot open file") != std::string::npos;
        return cannot_open ? READ_FILE_FAILED : INVALID_FILE;
    }
    UnwrapInventory(tree);
    ReadBmcType(tree, report);
    return TakeContent(tree, report);
}

}  // namespace service
