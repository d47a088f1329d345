// Keeps what is written to std::cout while the object lives, and off the test's own output.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace test_support {

class CoutCapture {
  public:
    CoutCapture() : before_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CoutCapture() { std::cout.rdbuf(before_); }
    CoutCapture(const CoutCapture&) = delete;
    CoutCapture& operator=(const CoutCapture&) = delete;

    [[nodiscard]] std::string Text() const { return text_.str(); }

  private:
    std::ostringstream text_;
    std::streambuf* before_;
};

}  // namespace test_support
