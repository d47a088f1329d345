// Single CIM-XML elements (DSP0201) as values: instances and their names.
//
// Knows no messages. Private to this transport.
#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>

#include "transport/cim_xml/cim_types.h"

namespace Vantix::transport {

/// The clean text of an element, CDATA sections included.
[[nodiscard]] std::string CimNodeText(const pugi::xml_node& node);

/// The clean text of an attribute; empty when it is absent.
[[nodiscard]] std::string CimAttribute(const pugi::xml_node& node, const char* name);

/// INSTANCENAME, or INSTANCEPATH, LOCALINSTANCEPATH or OBJECTPATH around one; an empty name for
/// anything else.
[[nodiscard]] CimInstanceName ReadCimName(const pugi::xml_node& node);

/// An INSTANCE, alone or in one of the VALUE elements that name it. Nothing, and a reason, for an
/// element that is no usable instance.
[[nodiscard]] std::optional<CimInstance> ReadCimInstance(const pugi::xml_node& node,
                                                         std::string& reason);

}  // namespace Vantix::transport
