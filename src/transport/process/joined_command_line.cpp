#include "transport/process/joined_command_line.h"

namespace Vantix::transport {
namespace {

// Backslashes are ordinary letters, except before a quotation mark, where they come in pairs.
std::string Quoted(const std::string& word) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char letter : word) {
        if (letter == '"') quoted.append(backslashes + 1, '\\');
        backslashes = letter == '\\' ? backslashes + 1 : 0;
        quoted += letter;
    }
    quoted.append(backslashes, '\\');
    return quoted + '"';
}

bool NeedsQuotes(const std::string& word) {
    return word.empty() || word.find_first_of(" \t\n\v\"") != std::string::npos;
}

}  // namespace

std::string JoinedCommandLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        if (!line.empty()) line += ' ';
        line += NeedsQuotes(word) ? Quoted(word) : word;
    }
    return line;
}

}  // namespace Vantix::transport
