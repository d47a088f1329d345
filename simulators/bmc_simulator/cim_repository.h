// The CIM instances of a scenario folder in memory: each cim/*.xml is one class in one namespace,
//
//   <INSTANCES NAMESPACE="root/cimv2" CLASS="CIM_SoftwareIdentity">
//     <VALUE.NAMEDINSTANCE>...as it goes over the wire...</VALUE.NAMEDINSTANCE>
//   </INSTANCES>
//
// where instances of subclasses stand under the class that they specialise. Knows no protocol.

#pragma once

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace simulators {

class CimRepository {
  public:
    struct Entry {
        std::string name_space;
        std::string base_class;  ///< CLASS of the file
        std::string own_class;   ///< CLASSNAME of the instance
        pugi::xml_node name;     ///< INSTANCENAME
        pugi::xml_node instance;
    };

    /// Reads `folder`/cim; a scenario without it gives an empty repository.
    /// Throws std::runtime_error for a file that is no such list.
    [[nodiscard]] static CimRepository Load(const std::string& folder);

    [[nodiscard]] bool IsEmpty() const { return classes_.empty(); }
    [[nodiscard]] bool KnowsNamespace(std::string_view name_space) const;
    [[nodiscard]] bool KnowsClass(std::string_view name_space, std::string_view name) const;
    /// The instances of a class and its subclasses, in the order of the files.
    [[nodiscard]] std::vector<Entry> InstancesOf(std::string_view name_space,
                                                 std::string_view name) const;
    /// All instances of a namespace.
    [[nodiscard]] std::vector<Entry> All(std::string_view name_space) const;

  private:
    void LoadFile(const std::string& file);

    struct Class {
        std::string name_space;
        std::string name;
    };
    std::vector<std::shared_ptr<pugi::xml_document>> documents_;
    std::vector<Class> classes_;
    std::vector<Entry> entries_;
};

}  // namespace simulators
