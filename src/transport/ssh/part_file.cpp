#include "transport/ssh/part_file.h"

#include <filesystem>
#include <utility>

#include "common/files/file_path.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {

SshFailure TooLarge(std::uint64_t max_bytes) {
    return {SshProblem::kFileTooLarge,
            "the remote file is larger than " + std::to_string(max_bytes) + " bytes"};
}

PartFile::PartFile(std::string path, std::uint64_t max_bytes)
    : path_(std::move(path)), part_path_(path_ + ".part"), max_bytes_(max_bytes) {}

PartFile::~PartFile() {
    file_.close();
    std::error_code ignored;
    std::filesystem::remove(FilePath(part_path_), ignored);
}

// Removed first: a link of that name is not followed.
SshFailure PartFile::Begin() {
    file_.close();
    file_.clear();
    size_ = 0;
    std::error_code ignored;
    std::filesystem::remove(FilePath(part_path_), ignored);
    file_.open(FilePath(part_path_), std::ios::binary | std::ios::trunc);
    if (file_.is_open()) return {};
    return {SshProblem::kLocalFile, "the file " + CleanText(part_path_) + " cannot be made"};
}

SshFailure PartFile::Append(std::string_view bytes) {
    if (bytes.size() > max_bytes_ - size_) return TooLarge(max_bytes_);
    file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file_) {
        return {SshProblem::kLocalFile, "the file " + CleanText(part_path_) + " cannot be written"};
    }
    size_ += bytes.size();
    return {};
}

SshFailure PartFile::Commit() {
    file_.close();
    std::error_code error;
    if (!file_.fail()) {
        std::filesystem::rename(FilePath(part_path_), FilePath(path_), error);
    }
    if (!file_.fail() && !error) return {};
    return {SshProblem::kLocalFile, "the file " + CleanText(path_) + " cannot be written"};
}

}  // namespace Vantix::transport
