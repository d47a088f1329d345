// CIM-XML requests as text: the operation message (DSP0201) and its HTTP headers (DSP0200).
//
// Classic read operations only. Pulled enumerations are left out on purpose: small services refuse
// them. Each operation carries the fewest parameters, because some services refuse optional ones.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "transport/cim_xml/cim_types.h"

namespace Vantix::transport {

/// One intrinsic method call.
struct CimCall {
    std::string method;      ///< "EnumerateInstances", ...
    std::string name_space;  ///< "root/cimv2"
    /// Parameters in order, each with the XML of its value.
    std::vector<std::pair<std::string, std::string>> parameters;
};

/// All properties of all instances of a class and its subclasses.
[[nodiscard]] CimCall EnumerateInstancesCall(const std::string& name_space,
                                             std::string_view class_name);
[[nodiscard]] CimCall EnumerateInstanceNamesCall(const std::string& name_space,
                                                 std::string_view class_name);
/// `name` must not have reference keys: what they refer to is not kept.
[[nodiscard]] CimCall GetInstanceCall(const std::string& name_space, const CimInstanceName& name);
/// Instances at the other end of `association_class`; an empty class name restricts nothing.
[[nodiscard]] CimCall AssociatorsCall(const std::string& name_space, const CimInstanceName& name,
                                      std::string_view association_class,
                                      std::string_view result_class);

/// The body of the request.
[[nodiscard]] std::string WriteCimMessage(const CimCall& call, int message_id);

/// Content-Type, CIMOperation, CIMMethod and CIMObject.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> CimHeaders(const CimCall& call);

}  // namespace Vantix::transport
