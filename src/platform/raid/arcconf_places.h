// Where arcconf is on the machine that this program runs on. Private to this family.
#pragma once

#include <string>
#include <vector>

namespace Vantix::raid {

/// What CommandRunner takes as a program, in the order in which to try: by its name in the folders
/// for programs, then where the maker's own packages put it.
[[nodiscard]] std::vector<std::string> ArcconfPlaces();

}  // namespace Vantix::raid
