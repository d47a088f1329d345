// A text that a started program reads as a file: in the user's own temporary folder, closed to all
// others, not to be changed while the object lives, gone with it.
#pragma once

#include <string>

#include "transport/process/child_pipe_windows.h"

namespace Vantix::transport {

class PassedTextFile {
  public:
    /// IsMade() is false when the system gives no file.
    explicit PassedTextFile(const std::string& text);
    ~PassedTextFile();
    PassedTextFile(const PassedTextFile&) = delete;
    PassedTextFile& operator=(const PassedTextFile&) = delete;

    [[nodiscard]] bool IsMade() const { return !path_.empty(); }
    [[nodiscard]] const std::wstring& Path() const { return path_; }

  private:
    std::wstring path_;
    OwnedHandle reading_;  ///< shared with readers alone: nobody else opens the file for writing
};

}  // namespace Vantix::transport
