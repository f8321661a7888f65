#include "platform/CommandLine.h"

#include <algorithm>

namespace platform {

namespace {

std::vector<std::string> NamesOf(const Option& option) {
  std::vector<std::string> names;
  for (std::string_view rest = option.names; !rest.empty();) {
    const size_t end = std::min(rest.find(", "), rest.size());
    names.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 2, rest.size()));
  }
  return names;
}

const Option* Find(std::span<const Option> options, const std::string& name) {
  for (const Option& option : options) {
    const std::vector<std::string> names = NamesOf(option);
    if (std::find(names.begin(), names.end(), name) != names.end()) return &option;
  }
  return nullptr;
}

bool HasValue(const Option& option) { return !std::holds_alternative<bool*>(option.target); }

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

}  // namespace

std::string ParseOptions(std::span<const Option> options, const std::vector<std::string>& arguments,
                         std::vector<std::string>& words) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    if (word == "--") {
      words.insert(words.end(), arguments.begin() + static_cast<ptrdiff_t>(i) + 1, arguments.end());
      break;
    }
    if (!word.starts_with("-") || word == "-") {
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

std::string CompletionLine(const std::string& program, std::span<const Option> options,
                           std::span<const CommandText> commands) {
  std::string words;
  for (const CommandText& command : commands) words += std::string(" ") + command.name;
  for (const Option& option : options) {
    for (const std::string& name : NamesOf(option)) words += " " + name;
  }
  return "complete -o default -W '" + words.substr(words.empty() ? 0 : 1) + "' " + program + "\n";
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

}  // namespace platform
