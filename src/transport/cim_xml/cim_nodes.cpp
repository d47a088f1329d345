#include "transport/cim_xml/cim_nodes.h"

#include <cstring>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

// Names of instances may refer to instances whose names refer to instances; nobody needs more.
constexpr int kMostNestedNames = 4;

bool Is(const pugi::xml_node& node, const char* name) {
    return std::strcmp(node.name(), name) == 0;
}

CimInstanceName NameAtDepth(const pugi::xml_node& node, int depth);

CimKey ReadKey(const pugi::xml_node& parent, int depth) {
    CimKey key;
    if (const pugi::xml_node reference = parent.child("VALUE.REFERENCE")) {
        key.type = "reference";
        key.text = KeyText(NameAtDepth(reference.first_child(), depth + 1));
        return key;
    }
    const pugi::xml_node value = parent.child("KEYVALUE");
    key.text = CimNodeText(value);
    // Some services send TYPE, some VALUETYPE, some both: only VALUETYPE is ours to send back.
    const std::string type = CimAttribute(value, "VALUETYPE");
    if (!type.empty()) key.type = type;
    return key;
}

CimInstanceName ReadInstanceName(const pugi::xml_node& node, int depth) {
    CimInstanceName name;
    name.class_name = CimAttribute(node, "CLASSNAME");
    for (const pugi::xml_node& child : node.children("KEYBINDING")) {
        name.keys[CimAttribute(child, "NAME")] = ReadKey(child, depth);
    }
    const bool has_sole_key = node.child("KEYVALUE") || node.child("VALUE.REFERENCE");
    if (name.keys.empty() && has_sole_key) name.keys[""] = ReadKey(node, depth);
    return name;
}

CimInstanceName NameAtDepth(const pugi::xml_node& node, int depth) {
    if (depth > kMostNestedNames || !node) return {};
    if (Is(node, "INSTANCENAME")) return ReadInstanceName(node, depth);
    if (const pugi::xml_node inner = node.child("INSTANCENAME")) {
        return ReadInstanceName(inner, depth);
    }
    const pugi::xml_node path = node.child("INSTANCEPATH");
    return path ? NameAtDepth(path, depth + 1) : CimInstanceName();
}

std::vector<std::string> ReadArray(const pugi::xml_node& array) {
    std::vector<std::string> values;
    // A NULL among the values keeps its place: arrays are read side by side.
    for (const pugi::xml_node& value : array.children()) {
        if (Is(value, "VALUE") || Is(value, "VALUE.NULL")) values.push_back(CimNodeText(value));
    }
    return values;
}

void ReadProperty(const pugi::xml_node& node, CimInstance& instance) {
    std::string name = CimAttribute(node, "NAME");
    if (name.empty()) return;
    if (Is(node, "PROPERTY")) {
        std::vector<std::string>& values = instance.properties[std::move(name)];
        if (const pugi::xml_node value = node.child("VALUE")) {
            values = {CimNodeText(value)};
        } else if (const pugi::xml_node array = node.child("VALUE.ARRAY")) {
            values = ReadArray(array);
        }
    } else if (Is(node, "PROPERTY.ARRAY")) {
        instance.properties[std::move(name)] = ReadArray(node.child("VALUE.ARRAY"));
    } else if (Is(node, "PROPERTY.REFERENCE")) {
        const pugi::xml_node value = node.child("VALUE.REFERENCE");
        if (value) instance.references[std::move(name)] = NameAtDepth(value.first_child(), 0);
    }
}

CimInstanceName NameBeside(const pugi::xml_node& node) {
    for (const char* kind : {"INSTANCENAME", "INSTANCEPATH", "LOCALINSTANCEPATH", "OBJECTPATH"}) {
        if (const pugi::xml_node name = node.child(kind)) return NameAtDepth(name, 0);
    }
    return {};
}

}  // namespace

std::string CimNodeText(const pugi::xml_node& node) {
    std::string text;
    for (const pugi::xml_node& child : node.children()) {
        const bool is_text = child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
        if (is_text) text += child.value();
    }
    return CleanText(text);
}

std::string CimAttribute(const pugi::xml_node& node, const char* name) {
    return CleanText(node.attribute(name).value());
}

CimInstanceName ReadCimName(const pugi::xml_node& node) {
    return NameAtDepth(node, 0);
}

std::optional<CimInstance> ReadCimInstance(const pugi::xml_node& node, std::string& reason) {
    const bool is_named = !Is(node, "INSTANCE");
    const pugi::xml_node body = is_named ? node.child("INSTANCE") : node;
    if (!body) {
        reason = std::string(node.name()) + " without INSTANCE";
        return std::nullopt;
    }
    CimInstance instance;
    if (is_named) instance.name = NameBeside(node);
    instance.class_name = CimAttribute(body, "CLASSNAME");
    if (instance.class_name.empty()) instance.class_name = instance.name.class_name;
    if (instance.class_name.empty()) {
        reason = "INSTANCE without CLASSNAME";
        return std::nullopt;
    }
    for (const pugi::xml_node& child : body.children()) ReadProperty(child, instance);
    return instance;
}

}  // namespace Vantix::transport
