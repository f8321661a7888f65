#include "host/console/Options.h"

#include <algorithm>

#include "host/console/Commands.h"

namespace console {

namespace {

constexpr OptionEntry kOptions[] = {
    {"--script", "FILE", "replay the commands of a file, one a line",
     [](Options& options, const std::string& value) { options.script = value; }},
    {"--interactive", nullptr, "take commands from the terminal",
     [](Options& options, const std::string&) { options.interactive = true; }},
    {"--json", nullptr, "write one JSON object a line instead of the report",
     [](Options& options, const std::string&) { options.json = true; }},
    {"--library", "FOLDER", "a folder of fonts to choose from; may be given several times",
     [](Options& options, const std::string& value) { options.library.push_back(value); }},
    {"--state", "FOLDER", "keep fonts, preferences and copies of documents there",
     [](Options& options, const std::string& value) { options.state = value; }},
    {"--samples", "FOLDER", "the documents to show if none is named",
     [](Options& options, const std::string& value) { options.samples = value; }},
    {"--desktop", nullptr, "make fonts active for all of your programs, not in a sandbox",
     [](Options& options, const std::string&) { options.desktop = true; }},
    {"--completion", nullptr, "print a line for the shell that completes these options",
     [](Options& options, const std::string&) { options.completion = true; }},
    {"--help", nullptr, "print this help", [](Options& options, const std::string&) { options.help = true; }},
};

constexpr bool EveryOptionHasHelp() {
  return std::all_of(std::begin(kOptions), std::end(kOptions), [](const OptionEntry& entry) { return entry.help[0]; });
}
static_assert(EveryOptionHasHelp());

const OptionEntry* Find(const std::string& name) {
  for (const OptionEntry& entry : kOptions) {
    if (name == entry.name) return &entry;
  }
  return nullptr;
}

std::string Conflict(const Options& options) {
  if (options.script.empty()) return "";
  if (options.interactive) return "--script and --interactive cannot be used together";
  if (!options.files.empty()) return "--script allows no documents on the command line; open them in the script";
  return "";
}

std::string Padded(std::string text, size_t width) {
  text.resize(std::max(text.size() + 2, width), ' ');
  return text;
}

}  // namespace

std::span<const OptionEntry> OptionTable() { return kOptions; }

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
    const OptionEntry* entry = Find(name);
    if (!entry) return "unknown option '" + name + "'; see --help";
    std::string value;
    if (entry->argument) {
      if (equals == std::string::npos && i + 1 == arguments.size()) return name + " needs a " + entry->argument;
      value = equals == std::string::npos ? arguments[++i] : word.substr(equals + 1);
      if (value.empty()) return name + " needs a " + entry->argument;
    } else if (equals != std::string::npos) {
      return name + " takes no value";
    }
    entry->take(options, value);
  }
  return Conflict(options);
}

std::string HelpText() {
  constexpr size_t kColumn = 22;
  std::string text =
      "usage: run [OPTION ...] [DOCUMENT ...]\n"
      "Opens each document with the font plug-in loaded, saves a copy and closes it, and shows which fonts it needed,\n"
      "which were activated and why, which are missing, what the save wrote and what the close gave back.\n"
      "Without documents it does so for the samples.\n\n";
  for (const OptionEntry& entry : kOptions) {
    const std::string left = std::string("  ") + entry.name + (entry.argument ? std::string(" ") + entry.argument : "");
    text += Padded(left, kColumn) + entry.help + "\n";
  }
  text += "\nCommands of a script and of the console:\n";
  text += CommandHelp();
  return text +
         "\nExit status: 0 all went well, 1 something went wrong, 2 a command or option is not known.\n"
         "SIGINT, SIGTERM and SIGHUP close all documents and give fonts back before they end the host.\n";
}

std::string CompletionText() {
  std::string words;
  for (const OptionEntry& entry : kOptions) words += std::string(words.empty() ? "" : " ") + entry.name;
  return "complete -o default -W '" + words + "' ./run\n";
}

}  // namespace console
