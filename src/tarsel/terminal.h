// What the command asks of its terminal, its open files and its environment.
//
// Sources beside this header do it for each kind of system; nothing here knows what is being read.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace tarsel {

/// True when the standard error output is a terminal that understands cursor commands.
bool IsErrorOutputInteractive();

/// Columns of the terminal behind the standard error output; 80 when it does not tell.
std::size_t TerminalColumns();

enum class ReadState {
    kOk,
    kMissing,      ///< no such file, descriptor or terminal
    kTooOpen,      ///< others than the owner may read or write the file
    kEmpty,        ///< nothing there before its end
    kTooLong,      ///< more than kLongestPassword bytes without a line end
    kInterrupted,  ///< a signal asked to stop
    kFailed
};

inline constexpr std::size_t kLongestPassword = 4096;

/// Shows `prompt` on the controlling terminal and reads one line without showing it. The terminal
/// is as before afterwards, also after a signal. kMissing without a terminal. An empty line is kOk.
/// `is_interrupted` is asked once nothing can interrupt unnoticed any more.
ReadState PromptWithoutEcho(const std::string& prompt, const std::function<bool()>& is_interrupted,
                            std::string& line);

/// The first line of a file that only its owner may read and write, without its line end.
ReadState ReadPrivateFileLine(const std::string& file, std::string& line);

/// What a user does to make a file such a one: half a sentence without its end.
std::string HowToCloseToOthers();

/// The first line of what an open descriptor gives, without its line end. The descriptor is read
/// byte by byte, so that what follows stays for others, and left open.
ReadState ReadDescriptorLine(int descriptor, std::string& line);

/// The descriptor of the standard input.
int StandardInputDescriptor();
bool IsStandardInputTerminal();

/// Takes a variable out of the environment, also out of the memory where other processes of the
/// same user could see it. False when it was not there or empty.
bool TakeEnvironmentVariable(const char* name, std::string& value);

enum class WriteState { kOk, kReaderGone, kFailed };

/// Gives the three standard descriptors to nobody where they were closed: the next file or
/// connection to be opened would take the number, and whatever is printed would go there. Reading
/// and writing them still fails. To be called before anything is opened.
void OccupyStandardDescriptors();

/// Writes a whole text to the standard output.
WriteState WriteStandardOutput(const std::string& text);

/// Overwrites a secret before it is given back to the heap.
void WipeText(std::string& text);

}  // namespace tarsel
