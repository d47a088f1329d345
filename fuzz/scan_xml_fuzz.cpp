// Any bytes as a scan file: the reader answers with one of its codes and never with an exception,
// and what it read can be saved and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <streambuf>
#include <string>

#include "common/result/result_codes.h"
#include "service/update_scan_service/serialize_update_scan.h"

namespace {

using service::SerializeScanReport;
using service::UpdateScanReport;

// The reader tells its failures on standard output; millions of them tell nobody anything.
class Silence {
  public:
    Silence() : kept_(std::cout.rdbuf(nullptr)) {}
    ~Silence() { std::cout.rdbuf(kept_); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    std::streambuf* kept_;
};

// One file a process, gone at its end.
class ScratchFile {
  public:
    ScratchFile()
        : path_(std::filesystem::temp_directory_path() /
                ("tarsel-fuzz-" + std::to_string(std::random_device{}()) + ".xml")) {}
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    [[nodiscard]] std::string Path() const { return path_.string(); }
    void Write(const std::uint8_t* data, std::size_t size) const {
        std::ofstream stream(path_, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

  private:
    std::filesystem::path path_;
};

void Require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ScratchFile file;
    const Silence silence;
    file.Write(data, size);
    UpdateScanReport report;
    const int code = SerializeScanReport::LoadFromXml(file.Path(), report);
    Require(code == SUCCEED || code == INVALID_FILE);
    if (code != SUCCEED) return 0;
    Require(SerializeScanReport::SaveToXml(report, file.Path()) == SUCCEED);
    return 0;
}
