// CIM instances and their names as values, in the few shapes that an inventory needs.
//
// Every text is clean UTF-8 (transport/text). Types of properties are not kept: a number is its
// text, a boolean "TRUE" or "FALSE". Classes and qualifiers are not modelled.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

/// Orders names of classes, properties and keys, whose letter case does not count (DSP0004).
struct CimNameLess {
    using is_transparent = void;
    [[nodiscard]] bool operator()(std::string_view left, std::string_view right) const;
};

[[nodiscard]] bool IsSameCimName(std::string_view left, std::string_view right);

/// The value of one key. A key that is a reference holds the KeyText() of what it refers to.
struct CimKey {
    std::string text;
    std::string type = "string";  ///< "string", "numeric", "boolean" or "reference"
};

/// What names an instance within a namespace. A sole key without a name stands under "".
struct CimInstanceName {
    std::string class_name;
    std::map<std::string, CimKey, CimNameLess> keys;
};

/// The keys as one text, equal for two names of the same instance: order and letter case of key
/// names do not count, neither do class, namespace and host, which services spell differently on
/// the two sides of an association. Empty for a name without keys.
[[nodiscard]] std::string KeyText(const CimInstanceName& name);

struct CimInstance {
    std::string class_name;
    CimInstanceName name;  ///< empty when the answer did not tell it
    /// Values by property. No value: the property is NULL. An array keeps its order.
    std::map<std::string, std::vector<std::string>, CimNameLess> properties;
    std::map<std::string, CimInstanceName, CimNameLess> references;

    /// The first value of a property; empty when it is absent or NULL.
    [[nodiscard]] std::string Text(std::string_view property) const;
    /// All values of a property; none when it is absent or NULL.
    [[nodiscard]] const std::vector<std::string>& Values(std::string_view property) const;
    /// KeyText() of what a reference property refers to; empty when it is absent.
    [[nodiscard]] std::string Reference(std::string_view property) const;
};

}  // namespace Vantix::transport
