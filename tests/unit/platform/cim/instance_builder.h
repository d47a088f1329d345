// CIM instances as a test writes them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/cim/cim_snapshot.h"

namespace Vantix::cim {

inline transport::CimInstanceName Name(const std::string& key, const std::string& value) {
    transport::CimInstanceName name;
    name.class_name = "EX_Thing";
    name.keys[key].text = value;
    return name;
}

/// An instance under construction: AnInstance("EX_Chassis", "tag-1").With("Model", "M").
class InstanceBuilder {
  public:
    InstanceBuilder(const std::string& class_name, const std::string& key) {
        instance_.class_name = class_name;
        instance_.name = Name("Key", key);
    }
    InstanceBuilder& With(const std::string& property, const std::string& value) {
        instance_.properties[property] = {value};
        return *this;
    }
    InstanceBuilder& WithArray(const std::string& property, std::vector<std::string> values) {
        instance_.properties[property] = std::move(values);
        return *this;
    }
    InstanceBuilder& WithNull(const std::string& property) {
        instance_.properties[property] = {};
        return *this;
    }
    InstanceBuilder& Referring(const std::string& property, const std::string& key) {
        instance_.references[property] = Name("Key", key);
        return *this;
    }
    operator transport::CimInstance() const { return instance_; }  // NOLINT: reads as the instance

  private:
    transport::CimInstance instance_;
};

inline InstanceBuilder AnInstance(const std::string& class_name, const std::string& key) {
    return InstanceBuilder(class_name, key);
}

inline InstanceBuilder Software(const std::string& key) {
    return AnInstance("EX_SoftwareIdentity", key)
        .With("InstanceID", key)
        .With("VersionString", "1.0")
        .WithArray("IdentityInfoValue", {key});
}

inline transport::CimInstance Installed(const std::string& system, const std::string& software) {
    return AnInstance("EX_Installed", system + software)
        .Referring("System", system)
        .Referring("InstalledSoftware", software);
}

inline transport::CimInstance Element(const std::string& element, const std::string& software,
                                      std::vector<std::string> status = {}) {
    return AnInstance("EX_Element", element + software)
        .Referring("Dependent", element)
        .Referring("Antecedent", software)
        .WithArray("ElementSoftwareStatus", std::move(status));
}

}  // namespace Vantix::cim
