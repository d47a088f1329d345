// For as long as the object lives the test has no more rights than any other user, so that what is
// forbidden is forbidden also where tests run as root.
#pragma once

#include <string>

#ifdef _WIN32
#include "support/skip_test.h"

namespace test_support {

class UnprivilegedUser {
  public:
    explicit UnprivilegedUser(const std::string&) {
        SkipTest("a program of Windows cannot give up the rights of its user for a while");
    }
    ~UnprivilegedUser() {}  // so that an object of it is no unused variable
};

}  // namespace test_support
#else
#include <sys/types.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <stdexcept>

namespace test_support {

class UnprivilegedUser {
  public:
    /// Everybody may read `folder`, as far as its owner may.
    explicit UnprivilegedUser(const std::string& folder) : before_(::geteuid()) {
        namespace fs = std::filesystem;
        if (before_ != 0) return;
        Open(fs::path(folder).parent_path());
        Open(folder);
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (!entry.is_symlink()) Open(entry.path());
        }
        constexpr uid_t kNobody = 65534;
        if (::seteuid(kNobody) != 0) throw std::runtime_error("rights could not be given up");
    }
    ~UnprivilegedUser() {
        if (::seteuid(before_) != 0) std::terminate();
    }
    UnprivilegedUser(const UnprivilegedUser&) = delete;
    UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;

  private:
    static void Open(const std::filesystem::path& path) {
        using std::filesystem::perms;
        const perms owner = std::filesystem::status(path).permissions();
        perms more = perms::none;
        if ((owner & perms::owner_read) != perms::none) more |= perms::others_read;
        if ((owner & perms::owner_exec) != perms::none) more |= perms::others_exec;
        std::filesystem::permissions(path, more, std::filesystem::perm_options::add);
    }

    const uid_t before_;
};

}  // namespace test_support
#endif
