#include "bmc_simulator/cim_repository.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>

#include "bmc_simulator/name_case.h"

namespace simulators {
namespace {

namespace fs = std::filesystem;

}  // namespace

CimRepository CimRepository::Load(const std::string& folder) {
    CimRepository repository;
    const fs::path base = fs::path(folder) / "cim";
    std::error_code error;
    if (folder.empty() || !fs::is_directory(base, error)) return repository;
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(base)) {
        if (entry.path().extension() == ".xml") files.insert(entry.path().string());
    }
    for (const std::string& file : files) repository.LoadFile(file);
    return repository;
}

void CimRepository::LoadFile(const std::string& file) {
    auto document = std::make_shared<pugi::xml_document>();
    const auto result = document->load_file(file.c_str());
    const pugi::xml_node list = document->child("INSTANCES");
    if (!result || !list) throw std::runtime_error("no list of CIM instances: " + file);
    const std::string name_space = list.attribute("NAMESPACE").value();
    const std::string name = list.attribute("CLASS").value();
    classes_.push_back({name_space, name});
    for (const pugi::xml_node& value : list.children("VALUE.NAMEDINSTANCE")) {
        const pugi::xml_node instance = value.child("INSTANCE");
        const std::string own = instance.attribute("CLASSNAME").value();
        entries_.push_back({name_space, name, own, value.child("INSTANCENAME"), instance});
        if (!KnowsClass(name_space, own)) classes_.push_back({name_space, own});
    }
    documents_.push_back(std::move(document));
}

bool CimRepository::KnowsNamespace(std::string_view name_space) const {
    return std::any_of(classes_.begin(), classes_.end(),
                       [&](const Class& item) { return SameName(item.name_space, name_space); });
}

bool CimRepository::KnowsClass(std::string_view name_space, std::string_view name) const {
    return std::any_of(classes_.begin(), classes_.end(), [&](const Class& item) {
        return SameName(item.name_space, name_space) && SameName(item.name, name);
    });
}

std::vector<CimRepository::Entry> CimRepository::InstancesOf(std::string_view name_space,
                                                             std::string_view name) const {
    std::vector<Entry> found;
    for (const Entry& entry : All(name_space)) {
        const bool is_one = SameName(entry.base_class, name) || SameName(entry.own_class, name);
        if (is_one) found.push_back(entry);
    }
    return found;
}

std::vector<CimRepository::Entry> CimRepository::All(std::string_view name_space) const {
    std::vector<Entry> found;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(found),
                 [&](const Entry& entry) { return SameName(entry.name_space, name_space); });
    return found;
}

}  // namespace simulators
