// Runs a parser harness over the files of its corpus, and over beginnings of each file, because
// answers that end early are the commonest damage. A crash or a sanitizer's finding fails the test.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBeginningsPerFile = 40;

std::vector<std::uint8_t> ReadFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::size_t Replay(const fs::path& path) {
    const std::vector<std::uint8_t> bytes = ReadFile(path);
    const std::size_t step = std::max<std::size_t>(bytes.size() / kBeginningsPerFile, 1);
    std::size_t inputs = 0;
    for (std::size_t size = 0; size < bytes.size(); size += step, ++inputs) {
        // A copy of exactly that size, so that a sanitizer sees every read behind its end.
        const std::vector<std::uint8_t> beginning(bytes.begin(),
                                                  bytes.begin() + static_cast<long>(size));
        LLVMFuzzerTestOneInput(beginning.data(), beginning.size());
    }
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return inputs + 1;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t files = 0;
    std::size_t inputs = 0;
    for (int n = 1; n < argc; ++n) {
        for (const auto& entry : fs::directory_iterator(argv[n])) {
            if (!entry.is_regular_file()) continue;
            ++files;
            inputs += Replay(entry.path());
        }
    }
    std::printf("%zu files, %zu inputs\n", files, inputs);
    return files == 0 ? 1 : 0;
}
