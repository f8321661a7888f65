#include "host/console/Complete.h"

#include <algorithm>
#include <filesystem>

#include "host/console/Commands.h"
#include "host/console/Preferences.h"
#include "host/console/Words.h"
#include "platform/PlainText.h"

namespace console {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> Paths(const std::string& partial) {
  const size_t slash = partial.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : partial.substr(0, slash + 1);
  const std::string begin = partial.substr(folder.size());
  std::vector<std::string> paths;
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(begin) || (begin.empty() && name.starts_with("."))) continue;
    std::error_code unknown;
    paths.push_back(folder + name + (fs::is_directory(entry->path(), unknown) ? "/" : ""));
  }
  return paths;
}

std::vector<std::string> WordsFor(Completion completion, const std::vector<std::string>& openDocuments) {
  std::vector<std::string> words;
  switch (completion) {
    case Completion::kCommand:
      for (const CommandEntry& entry : CommandTable()) words.emplace_back(entry.name);
      break;
    case Completion::kListing: words.assign(ListingNames().begin(), ListingNames().end()); break;
    case Completion::kPreference:
      for (const PreferenceRow& row : OfferedPreferences()) words.emplace_back(row.key);
      break;
    case Completion::kDocument: words = openDocuments; break;
    case Completion::kPath:
    case Completion::kNothing: break;
  }
  return words;
}

Completion CompletionFor(const Words& words) {
  if (words.empty()) return Completion::kCommand;
  const CommandEntry* entry = FindCommand(words[0]);
  if (!entry) return Completion::kNothing;
  const bool isFirst = words.size() == 1;
  return isFirst || (entry->completion == Completion::kPath && entry->most > 1) ? entry->completion
                                                                                : Completion::kNothing;
}

}  // namespace

Candidates CompleteLine(std::string_view upToCursor, const std::vector<std::string>& openDocuments) {
  const PartialLine line = SplitPartialLine(upToCursor);
  const Completion completion = CompletionFor(line.words);
  Candidates candidates;
  candidates.start = line.start;
  const std::vector<std::string> words =
      completion == Completion::kPath ? Paths(line.partial) : WordsFor(completion, openDocuments);
  for (const std::string& word : words) {
    if (word.starts_with(line.partial)) candidates.words.push_back(QuoteWord(word));
  }
  std::sort(candidates.words.begin(), candidates.words.end());
  return candidates;
}

std::string CommonStart(const std::vector<std::string>& words) {
  if (words.empty()) return "";
  std::string common = words.front();
  for (const std::string& word : words) {
    size_t same = 0;
    while (same < common.size() && same < word.size() && common[same] == word[same]) ++same;
    while (same > 0 && same < common.size() && platform::IsContinuation(common[same])) --same;
    common.resize(same);
  }
  return common;
}

}  // namespace console
