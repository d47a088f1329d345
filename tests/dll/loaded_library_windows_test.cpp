// The library as a program finds it that was linked without it: by the path of its file, wherever
// that is, with the system lists beside it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "common/files/file_path.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"
#include "simulated_server.h"
#include "support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using service::ServiceUpdateScan;
using service::UpdateScanOption;
using service::UpdateScanReport;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kLibrary = "update_scan_service.dll";
constexpr std::array kLists = {"Orvane_systems_list.txt",  "AMD_systems_list.txt",
                               "CFC_systems_list.txt",     "CSP_systems_list.txt",
                               "Grantly_systems_list.txt", "NO_BMC_systems_list.txt"};

fs::path FolderOf(HMODULE module) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return fs::path(path).parent_path();
}

/// The library that this program is linked with: the one that an imported text lies in.
HMODULE LinkedLibrary() {
    HMODULE module = nullptr;
    const auto* const address =
        reinterpret_cast<const wchar_t*>(&service::SerializeScanReport::TAG_SCAN);
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return GetModuleHandleExW(flags, address, &module) == 0 ? nullptr : module;
}

fs::path LinkedFolder() {
    return FolderOf(LinkedLibrary());
}

// A copy of the library and its lists in a folder whose name no code page has as a whole.
class LoadedLibraryTest : public testing::Test {
  protected:
    LoadedLibraryTest()
        : folder_(fs::path(outer_.Path("")) / Vantix::FilePath("dir \xC3\xBC\xE4\xB8\xAD")) {
        fs::create_directories(folder_);
        fs::copy_file(LinkedFolder() / kLibrary, folder_ / kLibrary);
        for (const char* const list : kLists) {
            fs::copy_file(LinkedFolder() / list, folder_ / list);
        }
    }
    ~LoadedLibraryTest() override {
        if (module_ != nullptr) FreeLibrary(module_);
    }

    void Load() {
        module_ = LoadLibraryW((folder_ / kLibrary).c_str());
        ASSERT_NE(module_, nullptr) << GetLastError();
        ASSERT_NE(module_, LinkedLibrary()) << "the linked one was taken";
    }

    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

    // The names are those that the compiler gives to the members of the class.
    void Scan(const UpdateScanOption& option) const {
        const auto construct = Find<void (*)(void*, const UpdateScanOption&)>(
            "_ZN7service17ServiceUpdateScanC1ERKNS_16UpdateScanOptionE");
        const auto run = Find<TarselResult (*)(void*, UpdateScanReport&)>(
            "_ZN7service17ServiceUpdateScan3RunERNS_16UpdateScanReportE");
        const auto destroy = Find<void (*)(void*)>("_ZN7service17ServiceUpdateScanD1Ev");
        ASSERT_TRUE(construct != nullptr && run != nullptr && destroy != nullptr);
        alignas(ServiceUpdateScan) std::array<unsigned char, sizeof(ServiceUpdateScan)> scan{};
        construct(scan.data(), option);
        UpdateScanReport report;
        run(scan.data(), report);
        destroy(scan.data());
    }

    void ScanRackServer() {
        const simulators::BmcSimulator server(front_end::RackServer());
        const UpdateScanOption option = front_end::ScanOf(server);
        Scan(option);
        notices_ = option.connect_option.run->Notices();
    }

    test_support::TemporaryFolder outer_;
    fs::path folder_;
    HMODULE module_ = nullptr;
    std::vector<std::string> notices_;
};

TEST_F(LoadedLibraryTest, ListsLieBesideTheLinkedLibrary) {
    for (const char* const list : kLists) {
        EXPECT_TRUE(fs::is_regular_file(LinkedFolder() / list)) << list;
    }
}

TEST_F(LoadedLibraryTest, LibraryOfAnyFolderTellsItsVersion) {
    Load();
    const auto version = Find<const char* (*)()>("_Z13TarselVersionv");
    ASSERT_NE(version, nullptr);
    EXPECT_STREQ(version(), TARSEL_VERSION);
    EXPECT_EQ(FolderOf(module_), folder_);
}

TEST_F(LoadedLibraryTest, ListsOfItsOwnFolderAreRead) {
    std::ofstream(folder_ / "Orvane_systems_list.txt", std::ios::app) << "Example Rack 100\n";
    Load();
    ScanRackServer();
    EXPECT_THAT(notices_, Contains(HasSubstr("carries the Orvane brand")));
}

TEST_F(LoadedLibraryTest, ListsOfTheProgramsFolderAreNotThoseOfTheLibrary) {
    Load();
    ScanRackServer();
    EXPECT_THAT(notices_, Not(Contains(HasSubstr("carries the Orvane brand"))));
}

}  // namespace
