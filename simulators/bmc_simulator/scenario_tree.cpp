#include "bmc_simulator/scenario_tree.h"

#include <algorithm>
#include <array>
#include <boost/json.hpp>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

namespace simulators {
namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

std::optional<char> HexByte(std::string_view digits) {
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return static_cast<char>(value);
}

std::string LowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

/// One slash between segments and none at the end.
std::string TidyPath(std::string_view path) {
    std::string tidy;
    for (const char c : path) {
        if (c != '/' || tidy.empty() || tidy.back() != '/') tidy.push_back(c);
    }
    while (tidy.size() > 1 && tidy.back() == '/') tidy.pop_back();
    return tidy;
}

std::string ReadFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

int FirstNumber(const std::string& text) {
    const std::size_t start = text.find_first_of("0123456789");
    int number = 0;
    if (start != std::string::npos) {
        std::from_chars(text.data() + start, text.data() + text.size(), number);
    }
    return number >= 400 && number <= 599 ? number : 500;
}

std::string MessageIdOf(const json::object& error) {
    std::string ids;
    if (const json::value* code = error.if_contains("code"); code && code->is_string()) {
        ids += std::string_view(code->get_string());
    }
    const json::value* info = error.if_contains("@Message.ExtendedInfo");
    const json::array* list = info ? info->if_array() : nullptr;
    for (const json::value& entry : list ? *list : json::array()) {
        const json::object* message = entry.if_object();
        const json::value* id = message ? message->if_contains("MessageId") : nullptr;
        if (id && id->is_string()) ids += " " + std::string(std::string_view(id->get_string()));
    }
    return ids;
}

}  // namespace

std::string Unquote(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte =
            text[i] == '%' && i + 2 < text.size() ? HexByte(text.substr(i + 1, 2)) : std::nullopt;
        plain.push_back(byte ? *byte : text[i]);
        if (byte) i += 2;
    }
    return plain;
}

int ScenarioTree::StatusOf(const std::string& body) {
    // Most bodies are no errors; parsing thousands of them at start would be felt.
    if (body.size() > 16 && body.find("\"error\"") == std::string::npos) return 200;
    boost::system::error_code failure;
    const json::value value = json::parse(body, failure);
    if (failure) return 200;
    if (value.is_null()) return 404;
    const json::object* object = value.if_object();
    const json::value* error = object ? object->if_contains("error") : nullptr;
    if (!error || !error->is_object() || object->contains("@odata.type")) return 200;
    static constexpr std::array<std::pair<std::string_view, int>, 5> kStatuses = {{
        {"ResourceMissingAtURI", 404},
        {"ResourceNotFound", 404},
        {"InsufficientPrivilege", 403},
        {"ResourceTemporarilyUnavailable", 503},
        {"InternalError", 500},
    }};
    const std::string ids = LowerCase(MessageIdOf(error->get_object()));
    for (const auto& [id, status] : kStatuses) {
        if (ids.find(LowerCase(std::string(id))) != std::string::npos) return status;
    }
    return 400;
}

ScenarioTree ScenarioTree::Load(const std::string& folder) {
    ScenarioTree tree;
    if (folder.empty()) return tree;
    const fs::path base(folder);
    std::error_code error;
    if (!fs::exists(base / "redfish", error) && fs::is_directory(base / "cim", error)) return tree;
    if (!fs::is_regular_file(base / "redfish" / "v1" / "index.json", error)) {
        throw std::runtime_error("no redfish/v1/index.json in scenario folder: " + folder);
    }
    for (const auto& entry : fs::recursive_directory_iterator(base / "redfish")) {
        const bool is_body = entry.path().filename() == "index.json";
        if (!is_body && entry.path().filename() != "error.txt") continue;
        const std::string path =
            "/" + entry.path().parent_path().lexically_relative(base).generic_string();
        std::string text = ReadFile(entry.path());
        if (is_body) {
            tree.Replace(path, std::move(text));
        } else {
            tree.Replace(path, " ");
            tree.resources_[TidyPath(Unquote(path))] = {FirstNumber(text), ""};
        }
    }
    return tree;
}

void ScenarioTree::Replace(const std::string& path, std::string body) {
    const std::string key = TidyPath(Unquote(path));
    if (body.empty()) {
        resources_.erase(key);
        key_of_lower_case_.erase(LowerCase(key));
        return;
    }
    const int status = StatusOf(body);
    resources_[key] = {status, std::move(body)};
    key_of_lower_case_.emplace(LowerCase(key), key);
}

const ScenarioTree::Resource* ScenarioTree::FindKey(const std::string& key) const {
    if (const auto exact = resources_.find(key); exact != resources_.end()) return &exact->second;
    const auto similar = key_of_lower_case_.find(LowerCase(key));
    if (similar == key_of_lower_case_.end()) return nullptr;
    const auto found = resources_.find(similar->second);
    return found == resources_.end() ? nullptr : &found->second;
}

const ScenarioTree::Resource* ScenarioTree::Find(std::string_view target) const {
    const std::size_t question = target.find('?');
    const std::string path = TidyPath(Unquote(target.substr(0, question)));
    if (question == std::string_view::npos) return FindKey(path);
    const Resource* page = FindKey(path + Unquote(target.substr(question)));
    return page ? page : FindKey(path);
}

}  // namespace simulators
