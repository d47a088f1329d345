// Answers of a CIM service as texts, for tests.
#pragma once

#include <string>

namespace Vantix::transport {

inline std::string Response(const std::string& content, const std::string& id = "7") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
           "<MESSAGE ID=\"" +
           id +
           "\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstances\">" +
           content + "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n";
}

inline std::string Returned(const std::string& values, const std::string& id = "7") {
    return Response("<IRETURNVALUE>" + values + "</IRETURNVALUE>", id);
}

inline std::string NamedInstance(const std::string& id, const std::string& properties = {}) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"EX_SoftwareIdentity\"><KEYBINDING "
           "NAME=\"InstanceID\"><KEYVALUE VALUETYPE=\"string\">" +
           id +
           "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"EX_SoftwareIdentity\">"
           "<PROPERTY NAME=\"InstanceID\" TYPE=\"string\"><VALUE>" +
           id + "</VALUE></PROPERTY>" + properties + "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

inline std::string Property(const std::string& name, const std::string& value) {
    return "<PROPERTY NAME=\"" + name + "\" TYPE=\"string\"><VALUE>" + value +
           "</VALUE></PROPERTY>";
}

inline std::string CimError(int code, const std::string& description, const std::string& id = "7") {
    return Response(
        "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"" + description + "\"/>", id);
}

}  // namespace Vantix::transport
