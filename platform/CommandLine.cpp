#include "platform/CommandLine.h"

#include <algorithm>

namespace platform {

namespace {

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const size_t end = std::min(text.find(separator), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + separator.size(), text.size()));
  }
  return parts;
}

std::string Join(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

std::vector<std::string> NamesOf(const Option& option) { return Split(option.names, ", "); }

// Empty if an option takes any value.
std::vector<std::string> ChoicesOf(const Option& option) {
  const std::vector<std::string> choices = Split(option.argument, "|");
  return choices.size() > 1 ? choices : std::vector<std::string>();
}

const Option* Find(std::span<const Option> options, const std::string& name) {
  for (const Option& option : options) {
    const std::vector<std::string> names = NamesOf(option);
    if (std::find(names.begin(), names.end(), name) != names.end()) return &option;
  }
  return nullptr;
}

bool HasValue(const Option& option) { return !std::holds_alternative<bool*>(option.target); }

bool Allows(const Option& option, const std::string& value) {
  const std::vector<std::string> choices = ChoicesOf(option);
  return choices.empty() || std::find(choices.begin(), choices.end(), value) != choices.end();
}

void Set(const Option& option, const std::string& value) {
  if (bool* const* flag = std::get_if<bool*>(&option.target)) {
    **flag = true;
  } else if (std::string* const* text = std::get_if<std::string*>(&option.target)) {
    **text = value;
  } else {
    std::get<std::vector<std::string>*>(option.target)->push_back(value);
  }
}

std::string HelpLine(const std::string& name, const std::string& argument, const char* help, size_t column) {
  std::string line = "  " + name + (argument.empty() ? "" : " ") + argument;
  line.resize(std::max(line.size() + 2, column), ' ');
  return line + help + "\n";
}

std::string WithoutHyphens(std::string_view text) {
  std::string escaped;  // a bare hyphen may be printed as another character, which cannot be copied to a shell
  for (const char c : text) escaped += c == '-' ? std::string("\\-") : std::string(1, c);
  return escaped;
}

std::string ManualEntry(const std::string& bold, const std::string& italic, std::string help) {
  help[0] = static_cast<char>(help[0] >= 'a' && help[0] <= 'z' ? help[0] - 'a' + 'A' : help[0]);
  const std::string name = WithoutHyphens(bold);
  return ".TP\n" + (italic.empty() ? ".B " + name : ".BI \"" + name + "\" \" " + italic + "\"") + "\n" +
         WithoutHyphens(help) + ".\n";
}

// A command of one or two words as shells complete it: the first word, then what may follow.
struct CommandWord {
  std::string name;
  std::string help;  // of a first word that others follow, these
  std::vector<CommandWord> following = {};
};

std::vector<CommandWord> WordsOf(std::span<const CommandText> commands) {
  std::vector<CommandWord> words;
  for (const CommandText& command : commands) {
    const std::vector<std::string> parts = Split(command.name, " ");
    if (parts.size() == 1) {
      words.push_back({parts[0], command.help});
      continue;
    }
    if (words.empty() || words.back().name != parts[0]) words.push_back({parts[0], ""});
    words.back().help += (words.back().help.empty() ? "" : ", ") + parts[1];
    words.back().following.push_back({parts[1], command.help});
  }
  return words;
}

std::string CompletionForBash(const std::string& program, std::span<const Option> options,
                              std::span<const CommandText> commands) {
  std::vector<std::string> words;
  for (const CommandText& command : commands) words.push_back(command.name);
  for (const Option& option : options) {
    for (const std::string& name : NamesOf(option)) words.push_back(name);
  }
  return "complete -o default -W '" + Join(words, " ") + "' " + program + "\n";
}

// Puts a backslash before each of these characters.
std::string Escape(std::string_view text, std::string_view characters) {
  std::string escaped;
  for (const char c : text) escaped += (characters.find(c) == std::string::npos ? "" : "\\") + std::string(1, c);
  return escaped;
}

// A word of zsh. A quote within quotes cannot be escaped there.
std::string QuoteForZsh(std::string_view text) {
  std::string quoted;
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return "'" + quoted + "'";
}

std::string ZshValueOf(const Option& option) {
  const std::string name = option.argument;
  if (const auto choices = ChoicesOf(option); !choices.empty()) return ":value:(" + Join(choices, " ") + ")";
  return ":" + name + ":" + (name == "FOLDER" ? "_files -/" : name == "FILE" ? "_files" : " ");
}

// What _describe takes: "name:help".
std::string ZshList(const std::vector<CommandWord>& words) {
  std::string list;
  for (const CommandWord& word : words) list += " " + QuoteForZsh(word.name + ":" + Escape(word.help, ":\\"));
  return list;
}

std::string CompletionForZsh(const std::string& program, std::span<const Option> options,
                             std::span<const CommandText> commands) {
  const std::vector<CommandWord> words = WordsOf(commands);
  std::string text =
      "#compdef " + program + "\nlocal curcontext=$curcontext state line\nlocal -a words_here\n_arguments -C";
  for (const Option& option : options) {
    const std::vector<std::string> names = NamesOf(option);
    for (const std::string& name : names) {
      const bool takesEquals = HasValue(option) && name.starts_with("--");
      text += " \\\n  " + QuoteForZsh("(" + Join(names, " ") + ")" + name + (takesEquals ? "=" : "") + "[" +
                                      Escape(option.help, "[]\\") + "]" + (HasValue(option) ? ZshValueOf(option) : ""));
    }
  }
  if (words.empty()) return text + " \\\n  '*:file:_files'\n";
  text +=
      " \\\n  '1: :->first' '2: :->second' '*:file:_files' && return\n"
      "case $state:$line[1] in\n  first:*) words_here=(" +
      ZshList(words) + ") ;;\n";
  for (const CommandWord& word : words) {
    if (!word.following.empty())
      text += "  second:" + word.name + ") words_here=(" + ZshList(word.following) + ") ;;\n";
  }
  return text + "  *) _files; return ;;\nesac\n_describe command words_here\n";
}

std::string QuoteForFish(std::string_view text) { return "'" + Escape(text, "'\\") + "'"; }

std::string FishValueOf(const Option& option) {
  const std::string name = option.argument;
  if (const auto choices = ChoicesOf(option); !choices.empty()) return " -x -a " + QuoteForFish(Join(choices, " "));
  return name == "FOLDER" ? " -x -a '(__fish_complete_directories)'" : name == "FILE" ? " -r" : " -x";
}

std::string CompletionForFish(const std::string& program, std::span<const Option> options,
                              std::span<const CommandText> commands) {
  const std::string start = "complete -c " + program;
  std::string text;
  for (const Option& option : options) {
    text += start;
    for (const std::string& name : NamesOf(option)) {
      text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    text += (HasValue(option) ? FishValueOf(option) : "") + " -d " + QuoteForFish(option.help) + "\n";
  }
  const auto line = [&](const char* when, const std::string& after, const CommandWord& word) {
    text += start + " -f -n '" + when + after + "' -a " + word.name + " -d " + QuoteForFish(word.help) + "\n";
  };
  for (const CommandWord& word : WordsOf(commands)) {
    line("__fish_use_subcommand", "", word);
    for (const CommandWord& second : word.following) line("__fish_seen_subcommand_from ", word.name, second);
  }
  return text;
}

}  // namespace

std::string ParseOptions(std::span<const Option> options, const std::vector<std::string>& arguments,
                         std::vector<std::string>& words, WordOrder order) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    const bool isWord = !word.starts_with("-") || word == "-";
    if (word == "--" || (isWord && order == WordOrder::kLast)) {
      words.insert(words.end(), arguments.begin() + static_cast<ptrdiff_t>(i) + (isWord ? 0 : 1), arguments.end());
      break;
    }
    if (isWord) {
      words.push_back(word);
      continue;
    }
    const size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const Option* option = Find(options, name);
    if (!option) return "unknown option '" + name + "'; see --help";
    std::string value;
    if (HasValue(*option)) {
      if (equals != std::string::npos) {
        value = word.substr(equals + 1);
      } else if (i + 1 < arguments.size()) {
        value = arguments[++i];
      }
      if (value.empty()) return name + " needs a " + option->argument;
      if (!Allows(*option, value)) return name + " takes one of " + Join(ChoicesOf(*option), ", ");
    } else if (equals != std::string::npos) {
      return name + " takes no value";
    }
    Set(*option, value);
  }
  return "";
}

std::string HelpLines(std::span<const Option> options, size_t column) {
  std::string lines;
  for (const Option& option : options) lines += HelpLine(option.names, option.argument, option.help, column);
  return lines;
}

std::string HelpLines(std::span<const CommandText> commands, size_t column) {
  std::string lines;
  for (const CommandText& command : commands) lines += HelpLine(command.name, command.arguments, command.help, column);
  return lines;
}

std::string Completion(const std::string& shell, const std::string& program, std::span<const Option> options,
                       std::span<const CommandText> commands) {
  if (shell == "zsh") return CompletionForZsh(program, options, commands);
  if (shell == "fish") return CompletionForFish(program, options, commands);
  return CompletionForBash(program, options, commands);
}

std::string ManualLines(std::span<const Option> options) {
  std::string lines;
  for (const Option& option : options) lines += ManualEntry(option.names, option.argument, option.help);
  return lines;
}

std::string ManualLines(std::span<const CommandText> commands) {
  std::string lines;
  for (const CommandText& command : commands) lines += ManualEntry(command.name, command.arguments, command.help);
  return lines;
}

std::string VersionLine(const std::string& program) { return program + " " + VERSION + "\n"; }

}  // namespace platform
