#include "platform/raid/arcconf_places.h"

#include <windows.h>

#include "platform/os/wide_text_windows.h"

namespace Vantix::raid {
namespace {

// Empty where it is not set.
std::string FolderIn(const wchar_t* variable) {
    wchar_t folder[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(variable, folder, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? std::string() : Utf8Of(folder);
}

}  // namespace

// The controllers changed hands, and the folder is named after the owner of the time.
std::vector<std::string> ArcconfPlaces() {
    std::vector<std::string> places = {"arcconf"};
    for (const wchar_t* variable : {L"ProgramW6432", L"ProgramFiles", L"ProgramFiles(x86)"}) {
        const std::string folder = FolderIn(variable);
        if (folder.empty()) continue;
        for (const char* maker : {"Microchip", "Microsemi", "Adaptec"}) {
            for (const char* product : {"maxView Storage Manager", "ARCCONF"}) {
                places.push_back(folder + "\\" + maker + "\\" + product + "\\arcconf.exe");
            }
        }
    }
    return places;
}

}  // namespace Vantix::raid
