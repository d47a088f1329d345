// Running this tool on a remote operating system and fetching what it wrote.
#pragma once

#include <memory>
#include <string>

#include "common/result/tarsel_result.h"

namespace Vantix {

/// A target's URI, for example ssh://user@host:22 (RFC 3986).
class Uri {
  public:
    /// Throws std::invalid_argument with one sentence when `text` is no URI with a host. With
    /// `strict` unset a bare IPv6 address is accepted as host.
    Uri(const std::string& text, bool strict);
    std::string Scheme() const;
    std::string User() const;
    std::string Host() const;
    int Port() const;  ///< 0 when the text names none

  private:
    std::string scheme_, user_, host_;
    int port_ = 0;
};

}  // namespace Vantix

class RemoteCommandInterface {
  public:
    virtual TarselResult Setup() = 0;
    virtual TarselResult Run(const std::string& command_line) = 0;
    virtual TarselResult DownloadLogs() = 0;
    virtual std::string GetLocalPath(const std::string& remote_file_name) = 0;
    // After the four operations, which stay the first four virtual functions.
    virtual ~RemoteCommandInterface() = default;
};

class RemoteCommandFactory {
  public:
    /// Throws std::runtime_error with one sentence when no remote channel can be made.
    static std::shared_ptr<RemoteCommandInterface> create(const Vantix::Uri& uri,
                                                          const std::string& output_dir,
                                                          const std::string& package_dir,
                                                          bool remote_flag);
};

/// The common result file: element RESULT with CODE (decimal or 0x) and MESSAGE.
class SummaryReport {
  public:
    /// False when the file cannot be read, has no CODE, or CODE is no number.
    static bool ExtractSummaryResult(const std::string& path, int& code, std::string& message);
};
