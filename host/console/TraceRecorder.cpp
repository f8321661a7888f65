#include "host/console/TraceRecorder.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/Trace.h"

namespace console {

namespace {

constexpr size_t kMostLines = 20000;
constexpr int kDeepest = 20;

// Returns the text between two texts; nothing if either is missing. Searches the end backwards.
std::optional<std::string> Between(std::string_view line, std::string_view begin, std::string_view end) {
  const size_t first = line.find(begin);
  if (first == std::string_view::npos) return std::nullopt;
  const size_t start = first + begin.size();
  const size_t last = line.rfind(end);
  if (last == std::string_view::npos || last < start) return std::nullopt;
  return std::string(line.substr(start, last - start));
}

struct Preference {
  std::string file;
  std::string over;
  std::string stage;
};

// "Preferred 'FILE' over 'FILE' for 'NAME': STAGE"
std::optional<Preference> ReadPreferred(std::string_view line, const std::string& name) {
  const std::string end = "' for '" + name + "': ";
  const auto file = Between(line, "Preferred '", "' over '");
  const auto over = Between(line, "' over '", end);
  if (!file || !over) return std::nullopt;
  return Preference{*file, *over, std::string(line.substr(line.rfind(end) + end.size()))};
}

struct Match {
  std::string file;
  std::string how;
};

// "Matched 'NAME' with 'FILE': HOW"
std::optional<Match> ReadMatched(std::string_view line, const std::string& name) {
  const auto file = Between(line, "Matched '" + name + "' with '", "': ");
  if (!file) return std::nullopt;
  return Match{*file, std::string(line.substr(line.rfind("': ") + 3))};
}

bool ReadBatchSize(std::string_view line, int64_t& count) {
  constexpr std::string_view kBefore = "Ready to batch-activate ";
  return line.starts_with(kBefore) &&
         std::from_chars(line.data() + kBefore.size(), line.data() + line.size(), count).ec == std::errc();
}

}  // namespace

namespace {

// Returns the code that a line reports for the function and document; empty for any other line.
std::string CodeOf(const std::string& line, const std::string& function, const std::string& path) {
  const std::string told = function + "('" + path + "') returned ";
  const size_t at = line.find(told);
  return at == std::string::npos ? "" : line.substr(at + told.size());
}

}  // namespace

TraceRecorder::TraceRecorder() { platform::SetTraceSink(&TraceRecorder::Take, this); }
TraceRecorder::~TraceRecorder() { platform::SetTraceSink(nullptr, nullptr); }

void TraceRecorder::Take(void* context, int indentChange, std::string_view line) {
  auto* self = static_cast<TraceRecorder*>(context);
  std::function<void(int64_t)> observer;
  {
    const std::lock_guard lock(self->mutex_);
    self->Store(indentChange, line);
    observer = self->batchObserver_;
  }
  int64_t count = 0;
  if (observer && ReadBatchSize(line, count)) observer(count);
}

void TraceRecorder::Store(int indentChange, std::string_view line) {
  if (indentChange < 0) indent_ = std::max(0, indent_ + indentChange);
  std::string text(static_cast<size_t>(std::min(indent_, kDeepest)) * 2, ' ');
  text += line.substr(0, line.find_last_not_of('\n') + 1);
  if (indentChange > 0) indent_ += indentChange;
  // A timer that fires a hundred times a second would push out everything else.
  if (!lines_.empty() && lines_.back().text == text) {
    ++lines_.back().times;
    return;
  }
  lines_.push_back({std::move(text)});
  if (lines_.size() <= kMostLines) return;
  lines_.pop_front();
  ++dropped_;
}

void TraceRecorder::SetBatchObserver(std::function<void(int64_t)> observer) {
  const std::lock_guard lock(mutex_);
  batchObserver_ = std::move(observer);
}

void TraceRecorder::Mark() {
  const std::lock_guard lock(mutex_);
  mark_ = dropped_ + lines_.size();
}

TraceRecorder::Reason TraceRecorder::ReasonFor(const std::string& postScriptName) const {
  const std::lock_guard lock(mutex_);
  Reason reason;
  Preference preference;
  for (size_t i = FirstSinceMark(); i < lines_.size(); ++i) {
    if (auto preferred = ReadPreferred(lines_[i].text, postScriptName)) {
      preference = std::move(*preferred);
    } else if (const auto match = ReadMatched(lines_[i].text, postScriptName)) {
      // A file other than the best can be chosen, by identification data or by the user.
      const bool isBest = preference.file == match->file;
      reason = {match->how, isBest ? preference.stage : "", isBest ? preference.over : ""};
      preference = {};
    }
  }
  return reason;
}

bool TraceRecorder::HasFailedToWriteSlug(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  bool hasFailed = false;
  for (size_t i = FirstSinceMark(); i < lines_.size(); ++i) {
    const std::string code = CodeOf(lines_[i].text, "WriteXMPGlyphsureSlugToFile", path);
    if (!code.empty()) hasFailed = code != "0x00000000";
  }
  return hasFailed;
}

bool TraceRecorder::HasFailedToLookUpFonts(const std::string& path) const {
  constexpr const char* kNoFonts = "-43";
  const std::lock_guard lock(mutex_);
  for (size_t i = FirstSinceMark(); i < lines_.size(); ++i) {
    const std::string code = CodeOf(lines_[i].text, "CreateGlyphsureDataForDocument", path);
    if (!code.empty() && code != kNoFonts) return true;
  }
  return false;
}

std::vector<std::string> TraceRecorder::LastLines(size_t most) const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> shown;
  for (size_t i = lines_.size() - std::min(most, lines_.size()); i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    shown.push_back(line.text + (line.times > 1 ? "  (" + std::to_string(line.times) + " times)" : ""));
  }
  return shown;
}

}  // namespace console
