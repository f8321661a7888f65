// The options and commands of a program. One table gives the parser, the help, the shell completion and the manual
// page.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Export.h"

namespace platform {

// All texts are in ASCII and must outlive the object.
struct Option {
  // "--json", or "-j, --json" with a short form.
  const char* names;
  // What the value is, in capitals; empty for an option without a value. FOLDER and FILE are completed as paths.
  // "bash|zsh|fish" allows only these values.
  const char* argument;
  // One line without a full stop at its end.
  const char* help;
  // What ParseOptions sets, not null. A bool becomes true, a text gets the last value, a list gets all values. An
  // option has an argument if and only if this is no bool.
  std::variant<bool*, std::string*, std::vector<std::string>*> target;
};

struct CommandText {
  const char* name;
  const char* arguments;  // as the help shows them, "[DOCUMENT]"; empty for none
  const char* help;
};

// Where words that are no options may be.
enum class WordOrder {
  kAnywhere,
  kLast,  // the first such word ends the options; all that follow are words, too, as for a program with its arguments
};

// Options may be anywhere before "--". A value is the next word or follows "=", and is not empty. Other words, "-" and
// all words after "--" are appended to `words`. Returns an empty text, or one line that says what is wrong, with all
// before it done.
PLATFORM_API std::string ParseOptions(std::span<const Option> options, const std::vector<std::string>& arguments,
                                      std::vector<std::string>& words, WordOrder order = WordOrder::kAnywhere);

// One line for each option or command. The help starts in this column, or two spaces after what is longer.
PLATFORM_API std::string HelpLines(std::span<const Option> options, size_t column);
PLATFORM_API std::string HelpLines(std::span<const CommandText> commands, size_t column);

// The values that `Completion` takes, for the table of options.
inline constexpr const char* kShells = "bash|zsh|fish";
// Returns what this shell reads to complete the words of `program`: the options and their values, the commands, which
// have one or two words, and paths.
PLATFORM_API std::string Completion(const std::string& shell, const std::string& program,
                                    std::span<const Option> options, std::span<const CommandText> commands = {});

// Returns the lines of a section of a manual page, in the man macros.
PLATFORM_API std::string ManualLines(std::span<const Option> options);
PLATFORM_API std::string ManualLines(std::span<const CommandText> commands);

// "PROGRAM 1.0.0", the version of all programs that are built together.
PLATFORM_API std::string VersionLine(const std::string& program);

}  // namespace platform
