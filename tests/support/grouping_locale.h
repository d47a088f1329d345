// A locale that writes 1,234,567, to prove that numbers which are data do not follow it.
#pragma once

#include <locale>
#include <string>

namespace test_support {

class GroupingPunctuation : public std::numpunct<char> {
  protected:
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

inline std::locale GroupingLocale() {
    return {std::locale::classic(), new GroupingPunctuation};
}

/// Makes it the global locale of C++ while the object lives.
class GlobalGroupingLocale {
  public:
    GlobalGroupingLocale() : before_(std::locale::global(GroupingLocale())) {}
    ~GlobalGroupingLocale() { std::locale::global(before_); }
    GlobalGroupingLocale(const GlobalGroupingLocale&) = delete;
    GlobalGroupingLocale& operator=(const GlobalGroupingLocale&) = delete;

  private:
    std::locale before_;
};

}  // namespace test_support
