#include "docfonts/Options.h"

#include <algorithm>

namespace docfonts {

namespace {

struct Entry {
  const char* name;
  const char* shortName;  // may be empty
  const char* argument;   // null without an argument
  const char* help;
  void (*take)(Options& options, const std::string& value);
};

constexpr Entry kOptions[] = {
    {"--recursive", "-r", nullptr, "read the documents in folders, and in the folders below them",
     [](Options& options, const std::string&) { options.recursive = true; }},
    {"--missing", "-m", nullptr, "list only fonts that are not active",
     [](Options& options, const std::string&) { options.missing = true; }},
    {"--resolve", "", nullptr, "ask the font manager which file of its library it would choose for each font",
     [](Options& options, const std::string&) { options.resolve = true; }},
    {"--state", "", "FOLDER", "the state folder of ./run whose fonts count as active, and whose font manager is asked",
     [](Options& options, const std::string& value) { options.state = value; }},
    {"--json", "", nullptr, "write one JSON object a line for each document",
     [](Options& options, const std::string&) { options.json = true; }},
    {"--completion", "", nullptr, "print a line for the shell that completes these options",
     [](Options& options, const std::string&) { options.completion = true; }},
    {"--help", "-h", nullptr, "print this help", [](Options& options, const std::string&) { options.help = true; }},
};

const Entry* Find(const std::string& name) {
  for (const Entry& entry : kOptions) {
    if (name == entry.name || (entry.shortName[0] && name == entry.shortName)) return &entry;
  }
  return nullptr;
}

}  // namespace

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  bool onlyFiles = false;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    if (onlyFiles || !word.starts_with("-") || word == "-") {
      options.files.push_back(word);
      continue;
    }
    if (word == "--") {
      onlyFiles = true;
      continue;
    }
    const size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const Entry* entry = Find(name);
    if (!entry) return "unknown option '" + name + "'; --help lists what there is";
    std::string value;
    if (entry->argument) {
      if (equals != std::string::npos) {
        value = word.substr(equals + 1);
      } else if (i + 1 < arguments.size()) {
        value = arguments[++i];
      }
      if (value.empty()) return name + " needs a " + entry->argument;
    } else if (equals != std::string::npos) {
      return name + " takes no value";
    }
    entry->take(options, value);
  }
  if (options.files.empty() && !options.help && !options.completion) return "no document named; --help says more";
  return "";
}

std::string HelpText() {
  constexpr size_t kColumn = 20;
  std::string text =
      "usage: docfonts [OPTION ...] FILE ...\n"
      "Lists the fonts that each document names, whether they are embedded and active, which identification of them the\n"
      "document carries, and what of it says so: pdf (the whole structure of a PDF), parser (the structure as the plug-in\n"
      "reads it), scan (text around font names), list (metadata of other applications), slug (metadata of the plug-in).\n\n";
  for (const Entry& entry : kOptions) {
    std::string left = std::string("  ") + (entry.shortName[0] ? std::string(entry.shortName) + ", " : "") + entry.name;
    if (entry.argument) left += std::string(" ") + entry.argument;
    left.resize(std::max(left.size() + 2, kColumn), ' ');
    text += left + entry.help + "\n";
  }
  return text + "\nExit status: 0 all documents were read, 1 one could not be read wholly, 2 an option is not known.\n";
}

std::string CompletionText() {
  std::string words;
  for (const Entry& entry : kOptions) {
    for (const char* name : {entry.shortName, entry.name}) {
      if (name[0]) words += std::string(words.empty() ? "" : " ") + name;
    }
  }
  return "complete -o default -W '" + words + "' docfonts\n";
}

}  // namespace docfonts
