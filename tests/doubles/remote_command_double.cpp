#include "platform/remote_command/remote_command.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

namespace Vantix {

Uri::Uri(const std::string& text, bool strict) {
    PlatformDouble::Current().UriConstructor(text, strict);
}

std::string Uri::Scheme() const {
    return PlatformDouble::Current().UriScheme();
}
std::string Uri::User() const {
    return PlatformDouble::Current().UriUser();
}
std::string Uri::Host() const {
    return PlatformDouble::Current().UriHost();
}
int Uri::Port() const {
    return PlatformDouble::Current().UriPort();
}

}  // namespace Vantix

std::shared_ptr<RemoteCommandInterface> RemoteCommandFactory::create(const Vantix::Uri& uri,
                                                                     const std::string& output_dir,
                                                                     const std::string& package_dir,
                                                                     bool remote_flag) {
    return PlatformDouble::Current().CreateRemoteCommand(uri, output_dir, package_dir, remote_flag);
}

bool SummaryReport::ExtractSummaryResult(const std::string& path, int& code, std::string& message) {
    return PlatformDouble::Current().ExtractSummaryResult(path, code, message);
}
