#include "bmc_simulator/cim_responder.h"

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>

#include "bmc_simulator/name_case.h"
#include "bmc_simulator/scenario_tree.h"

namespace simulators {
namespace {

using Entry = CimRepository::Entry;

constexpr const char* kContentType = "application/xml; charset=\"utf-8\"";

struct Call {
    std::string id;
    std::string method;
    std::string name_space;
    std::vector<pugi::xml_node> parameters;

    [[nodiscard]] pugi::xml_node Parameter(const char* name) const {
        for (const pugi::xml_node& parameter : parameters) {
            if (SameName(parameter.attribute("NAME").value(), name)) return parameter;
        }
        return {};
    }
    [[nodiscard]] std::string Class(const char* parameter) const {
        return Parameter(parameter).child("CLASSNAME").attribute("NAME").value();
    }
};

ServiceReply Refuse(int status, const std::string& error, const std::string& detail = {}) {
    ServiceReply reply;
    reply.status = status;
    reply.content_type = "text/plain";
    reply.headers.emplace_back("CIMError", error);
    if (!detail.empty()) reply.headers.emplace_back("PGErrorDetail", detail);
    return reply;
}

std::string HeaderOf(const ServiceRequest& request, std::string_view name) {
    const std::string* value = FindHeader(request.headers, name);
    return value == nullptr ? std::string() : *value;
}

std::set<std::string> AllowedParameters(const std::string& method) {
    if (method == "EnumerateInstances") {
        return {"ClassName",         "LocalOnly",          "DeepInheritance",
                "IncludeQualifiers", "IncludeClassOrigin", "PropertyList"};
    }
    if (method == "EnumerateInstanceNames") return {"ClassName"};
    if (method == "GetInstance") {
        return {"InstanceName", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin",
                "PropertyList"};
    }
    if (method == "Associators") {
        return {"ObjectName", "AssocClass",        "ResultClass",        "Role",
                "ResultRole", "IncludeQualifiers", "IncludeClassOrigin", "PropertyList"};
    }
    return {};
}

/// Every parameter known and given once.
bool AreParametersRight(const Call& call) {
    std::set<std::string> open = AllowedParameters(call.method);
    return std::all_of(call.parameters.begin(), call.parameters.end(),
                       [&open](const pugi::xml_node& parameter) {
                           return open.erase(parameter.attribute("NAME").value()) == 1;
                       });
}

std::string NamespaceOf(const pugi::xml_node& path) {
    std::string text;
    for (const pugi::xml_node& part : path.children("NAMESPACE")) {
        text += (text.empty() ? "" : "/") + std::string(part.attribute("NAME").value());
    }
    return text;
}

std::optional<ServiceReply> CheckHeaders(const ServiceRequest& request, const Call& call) {
    const std::string type = HeaderOf(request, "Content-Type");
    if (type != kContentType && type != "text/xml; charset=\"utf-8\"") {
        return Refuse(400, "header-mismatch", "Content-Type");
    }
    if (HeaderOf(request, "CIMOperation") != "MethodCall") {
        return Refuse(400, "unsupported-operation");
    }
    if (HeaderOf(request, "CIMMethod") != call.method) {
        return Refuse(400, "header-mismatch", "CIMMethod");
    }
    if (Unquote(HeaderOf(request, "CIMObject")) != call.name_space) {
        return Refuse(400, "header-mismatch", "CIMObject");
    }
    return std::nullopt;
}

std::optional<ServiceReply> CheckMessage(const pugi::xml_node& cim) {
    const pugi::xml_node message = cim.child("MESSAGE");
    const std::string_view dtd = cim.attribute("DTDVERSION").value();
    const std::string_view protocol = message.attribute("PROTOCOLVERSION").value();
    if (!dtd.starts_with("2.")) return Refuse(501, "unsupported-dtd-version");
    if (!protocol.starts_with("1.")) return Refuse(501, "unsupported-protocol-version");
    const bool has_id = message.attribute("ID").value()[0] != '\0';
    if (!has_id || !message.child("SIMPLEREQ").child("IMETHODCALL")) {
        return Refuse(400, "request-not-valid");
    }
    return std::nullopt;
}

Call ReadCall(const pugi::xml_node& message) {
    const pugi::xml_node node = message.child("SIMPLEREQ").child("IMETHODCALL");
    Call call;
    call.id = message.attribute("ID").value();
    call.method = node.attribute("NAME").value();
    call.name_space = NamespaceOf(node.child("LOCALNAMESPACEPATH"));
    for (const pugi::xml_node& parameter : node.children("IPARAMVALUE")) {
        call.parameters.push_back(parameter);
    }
    return call;
}

std::string TextOf(const pugi::xml_node& node) {
    std::string text = node.text().get();
    const std::size_t first = text.find_first_not_of(" \r\n\t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \r\n\t") - first + 1);
}

/// Keys as one text; references among them by the keys they refer to.
std::string KeysOf(const pugi::xml_node& name) {
    std::set<std::string> keys;
    for (const pugi::xml_node& binding : name.children("KEYBINDING")) {
        const pugi::xml_node reference = binding.child("VALUE.REFERENCE");
        const std::string value = reference
                                      ? KeysOf(reference.find_node([](const pugi::xml_node& node) {
                                            return std::string_view(node.name()) == "INSTANCENAME";
                                        }))
                                      : TextOf(binding.child("KEYVALUE"));
        keys.insert(std::string(binding.attribute("NAME").value()) + "=" + value);
    }
    std::string text;
    for (const std::string& key : keys) text += key + "\n";
    return text;
}

pugi::xml_node ReferredName(const pugi::xml_node& property) {
    return property.find_node(
        [](const pugi::xml_node& node) { return std::string_view(node.name()) == "INSTANCENAME"; });
}

class Answer {
  public:
    Answer(const CimRepository& repository, const Call& call)
        : repository_(repository), call_(call) {
        pugi::xml_node cim = document_.append_child("CIM");
        cim.append_attribute("CIMVERSION") = "2.0";
        cim.append_attribute("DTDVERSION") = "2.0";
        pugi::xml_node message = cim.append_child("MESSAGE");
        message.append_attribute("ID") = call.id.c_str();
        message.append_attribute("PROTOCOLVERSION") = "1.0";
        response_ = message.append_child("SIMPLERSP").append_child("IMETHODRESPONSE");
        response_.append_attribute("NAME") = call.method.c_str();
    }

    ServiceReply Make() {
        if (!repository_.KnowsNamespace(call_.name_space)) {
            Fail(3, "CIM_ERR_INVALID_NAMESPACE: " + call_.name_space);
        } else if (call_.method == "EnumerateInstances" ||
                   call_.method == "EnumerateInstanceNames") {
            Enumerate(call_.method == "EnumerateInstanceNames");
        } else if (call_.method == "GetInstance") {
            GetInstance();
        } else {
            Associators();
        }
        std::ostringstream text;
        document_.save(text, "", pugi::format_raw | pugi::format_no_empty_element_tags);
        ServiceReply reply;
        reply.content_type = kContentType;
        reply.headers.emplace_back("CIMOperation", "MethodResponse");
        reply.body = text.str();
        return reply;
    }

  private:
    void Fail(int code, const std::string& text) {
        pugi::xml_node error = response_.append_child("ERROR");
        error.append_attribute("CODE") = code;
        error.append_attribute("DESCRIPTION") = text.c_str();
    }

    /// An instance as asked for: inherited properties go unless LocalOnly is switched off.
    void AppendInstance(pugi::xml_node parent, const pugi::xml_node& instance) const {
        pugi::xml_node copy = parent.append_copy(instance);
        const std::string local = TextOf(call_.Parameter("LocalOnly").child("VALUE"));
        if (SameName(local, "FALSE") || call_.method == "Associators") return;
        while (copy.remove_child("PROPERTY") || copy.remove_child("PROPERTY.ARRAY")) {
        }
    }

    void Enumerate(bool names_only) {
        const std::string name = call_.Class("ClassName");
        if (!repository_.KnowsClass(call_.name_space, name)) {
            Fail(5, "CIM_ERR_INVALID_CLASS: " + name);
            return;
        }
        pugi::xml_node list = response_.append_child("IRETURNVALUE");
        for (const Entry& entry : repository_.InstancesOf(call_.name_space, name)) {
            if (names_only) {
                list.append_copy(entry.name);
                continue;
            }
            pugi::xml_node value = list.append_child("VALUE.NAMEDINSTANCE");
            value.append_copy(entry.name);
            AppendInstance(value, entry.instance);
        }
    }

    void GetInstance() {
        const pugi::xml_node name = call_.Parameter("InstanceName").child("INSTANCENAME");
        for (const Entry& entry :
             repository_.InstancesOf(call_.name_space, name.attribute("CLASSNAME").value())) {
            if (KeysOf(entry.name) != KeysOf(name)) continue;
            AppendInstance(response_.append_child("IRETURNVALUE"), entry.instance);
            return;
        }
        Fail(6, "CIM_ERR_NOT_FOUND");
    }

    void Associators() {
        const std::string keys = KeysOf(call_.Parameter("ObjectName").child("INSTANCENAME"));
        const std::string link_class = call_.Class("AssocClass");
        pugi::xml_node list = response_.append_child("IRETURNVALUE");
        for (const Entry& link : repository_.All(call_.name_space)) {
            const bool is_meant = link_class.empty() || SameName(link.base_class, link_class) ||
                                  SameName(link.own_class, link_class);
            if (is_meant) AppendOthers(list, link, keys);
        }
    }

    /// The instances at the other ends of `link`, when one end has these keys.
    void AppendOthers(pugi::xml_node list, const Entry& link, const std::string& keys) {
        const auto ends = link.instance.children("PROPERTY.REFERENCE");
        const bool touches = std::any_of(ends.begin(), ends.end(), [&](const pugi::xml_node& end) {
            return KeysOf(ReferredName(end)) == keys;
        });
        if (!touches) return;
        const std::string result_class = call_.Class("ResultClass");
        for (const Entry& entry : repository_.All(call_.name_space)) {
            const bool is_other =
                std::any_of(ends.begin(), ends.end(), [&](const pugi::xml_node& end) {
                    const std::string other = KeysOf(ReferredName(end));
                    return other != keys && other == KeysOf(entry.name);
                });
            const bool is_meant = result_class.empty() ||
                                  SameName(entry.base_class, result_class) ||
                                  SameName(entry.own_class, result_class);
            if (is_other && is_meant) AppendWithPath(list, entry);
        }
    }

    void AppendWithPath(pugi::xml_node list, const Entry& entry) const {
        pugi::xml_node value = list.append_child("VALUE.OBJECTWITHPATH");
        pugi::xml_node path = value.append_child("INSTANCEPATH");
        pugi::xml_node place = path.append_child("NAMESPACEPATH");
        place.append_child("HOST").text() = "simulated";
        pugi::xml_node local = place.append_child("LOCALNAMESPACEPATH");
        std::istringstream parts(entry.name_space);
        for (std::string part; std::getline(parts, part, '/');) {
            local.append_child("NAMESPACE").append_attribute("NAME") = part.c_str();
        }
        path.append_copy(entry.name);
        AppendInstance(value, entry.instance);
    }

    const CimRepository& repository_;
    const Call& call_;
    pugi::xml_document document_;
    pugi::xml_node response_;
};

}  // namespace

ServiceReply AnswerCim(const CimRepository& repository, const ServiceRequest& request) {
    pugi::xml_document document;
    const auto result = document.load_buffer(request.body.data(), request.body.size());
    if (!result) return Refuse(400, "request-not-well-formed", result.description());
    const pugi::xml_node cim = document.child("CIM");
    if (auto refusal = CheckMessage(cim)) return *refusal;
    const Call call = ReadCall(cim.child("MESSAGE"));
    if (auto refusal = CheckHeaders(request, call)) return *refusal;
    if (AllowedParameters(call.method).empty()) {
        return Refuse(400, "request-not-valid", "invalid%20imethodcall%20XML");
    }
    if (!AreParametersRight(call)) return Refuse(400, "request-not-valid", "parameters");
    return Answer(repository, call).Make();
}

}  // namespace simulators
