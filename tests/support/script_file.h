// A program written by a test: a shell script of its own folder.
#pragma once

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace test_support {

/// Writes an executable shell script and returns its full path.
inline std::string WriteScript(const TemporaryFolder& folder, const std::string& name,
                               const std::string& body) {
    const std::string path = folder.Write(name, "#!/bin/sh\n" + body);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

}  // namespace test_support
