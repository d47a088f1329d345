#include "common/result/result_code_registry.h"

#include <map>

namespace {

using TextsByCode = std::map<int, std::string>;

// Functions, not objects: constants of other files register before this file is initialised.
TextsByCode& CommonTexts() {
    static TextsByCode texts;
    return texts;
}

std::map<int, TextsByCode>& ModuleTexts() {
    static std::map<int, TextsByCode> texts;
    return texts;
}

}  // namespace

int ResultCodeRegistry::Register(int module, int code, const char* text) {
    const int full_code = (module << 16) | code;
    TextsByCode& texts = module < 1 ? CommonTexts() : ModuleTexts()[module];
    std::string& stored = texts[full_code];
    if (stored != text) stored = text;
    return full_code;
}

std::string ResultCodeRegistry::GetRegisteredMessage(int code, int module) {
    const TextsByCode& common = CommonTexts();
    if (const auto found = common.find(code); found != common.end()) return found->second;

    const auto& modules = ModuleTexts();
    if (const auto inner = modules.find(module); inner != modules.end()) {
        const auto found = inner->second.find(code);
        if (found != inner->second.end()) return found->second;
    }
    return "Unknow error";  // kept spelling
}
