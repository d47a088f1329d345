#include "transport/cim_xml/cim_request.h"

namespace Vantix::transport {
namespace {

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        switch (letter) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += letter;
        }
    }
    return escaped;
}

std::string ClassNameXml(std::string_view class_name) {
    return "<CLASSNAME NAME=\"" + Escaped(class_name) + "\"/>";
}

std::string InstanceNameXml(const CimInstanceName& name) {
    std::string xml = "<INSTANCENAME CLASSNAME=\"" + Escaped(name.class_name) + "\">";
    for (const auto& [key, value] : name.keys) {
        xml += "<KEYBINDING NAME=\"" + Escaped(key) + "\"><KEYVALUE VALUETYPE=\"" +
               Escaped(value.type) + "\">" + Escaped(value.text) + "</KEYVALUE></KEYBINDING>";
    }
    return xml + "</INSTANCENAME>";
}

// Without it a service may return only what the class itself defines, not what it inherits.
std::pair<std::string, std::string> WithInherited() {
    return {"LocalOnly", "<VALUE>FALSE</VALUE>"};
}

std::string NamespaceXml(std::string_view name_space) {
    std::string xml = "<LOCALNAMESPACEPATH>";
    while (!name_space.empty()) {
        const std::size_t slash = name_space.find('/');
        const std::string_view part = name_space.substr(0, slash);
        if (!part.empty()) xml += "<NAMESPACE NAME=\"" + Escaped(part) + "\"/>";
        name_space = slash == std::string_view::npos ? "" : name_space.substr(slash + 1);
    }
    return xml + "</LOCALNAMESPACEPATH>";
}

// All but letters, digits and the four marks that no service takes amiss (RFC 3986, unreserved).
std::string PercentEncoded(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char letter : text) {
        const bool is_plain = (letter >= 'a' && letter <= 'z') ||
                              (letter >= 'A' && letter <= 'Z') ||
                              (letter >= '0' && letter <= '9') ||
                              std::string_view("-_.~").find(letter) != std::string_view::npos;
        if (is_plain) {
            encoded += letter;
            continue;
        }
        const auto byte = static_cast<unsigned char>(letter);
        encoded += '%';
        encoded += kDigits[byte >> 4U];
        encoded += kDigits[byte & 0x0FU];
    }
    return encoded;
}

}  // namespace

CimCall EnumerateInstancesCall(const std::string& name_space, std::string_view class_name) {
    return {"EnumerateInstances",
            name_space,
            {{"ClassName", ClassNameXml(class_name)}, WithInherited()}};
}

CimCall EnumerateInstanceNamesCall(const std::string& name_space, std::string_view class_name) {
    return {"EnumerateInstanceNames", name_space, {{"ClassName", ClassNameXml(class_name)}}};
}

CimCall GetInstanceCall(const std::string& name_space, const CimInstanceName& name) {
    return {"GetInstance", name_space, {{"InstanceName", InstanceNameXml(name)}, WithInherited()}};
}

CimCall AssociatorsCall(const std::string& name_space, const CimInstanceName& name,
                        std::string_view association_class, std::string_view result_class) {
    CimCall call{"Associators", name_space, {{"ObjectName", InstanceNameXml(name)}}};
    if (!association_class.empty()) {
        call.parameters.emplace_back("AssocClass", ClassNameXml(association_class));
    }
    if (!result_class.empty()) {
        call.parameters.emplace_back("ResultClass", ClassNameXml(result_class));
    }
    return call;
}

std::string WriteCimMessage(const CimCall& call, int message_id) {
    std::string parameters;
    for (const auto& [name, value] : call.parameters) {
        parameters += "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
    }
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"" +
           std::to_string(message_id) +
           "\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" + call.method + "\">" +
           NamespaceXml(call.name_space) + parameters +
           "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
}

std::vector<std::pair<std::string, std::string>> CimHeaders(const CimCall& call) {
    return {{"Content-Type", "application/xml; charset=\"utf-8\""},
            {"CIMOperation", "MethodCall"},
            {"CIMMethod", call.method},
            {"CIMObject", PercentEncoded(call.name_space)}};
}

}  // namespace Vantix::transport
