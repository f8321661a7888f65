#include "host/console/TraceRecorder.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "host/include/TraceLines.h"
#include "platform/Trace.h"

namespace console {

namespace {

constexpr size_t kMostLines = 20000;
constexpr int kDeepest = 20;

using Parts = std::vector<std::string>;

// Returns the parts of a line that was traced with this format, as many as it has conversions; nothing for any other
// line. Texts of `known` stand for the conversions of their position, counted from 0, and are not among the parts.
// Indentation may precede the line. If a part contains the text between two conversions, the last such text ends it.
std::optional<Parts> ReadLine(std::string_view line, std::string_view format,
                              const std::map<size_t, std::string>& known = {}) {
  Parts between(1);  // the texts before, between and after the conversions
  size_t conversions = 0;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      between.back() += format[i];
      continue;
    }
    i = format.find_first_of("sdx", i);
    const auto found = known.find(conversions++);
    found == known.end() ? between.emplace_back() : between.back() += found->second;
  }
  if (!line.ends_with(between.back())) return std::nullopt;
  size_t end = line.size() - between.back().size();
  Parts parts(between.size() - 1);
  for (size_t i = parts.size(); i-- > 0;) {
    const std::string& before = between[i];
    const size_t at = i == 0 ? line.find(before) : line.substr(0, end).rfind(before);
    if (at == std::string_view::npos || at + before.size() > end) return std::nullopt;
    parts[i] = line.substr(at + before.size(), end - at - before.size());
    end = at;
  }
  return parts;
}

struct Preference {
  std::string file;
  std::string over;
  std::string stage;
};

std::optional<Preference> ReadPreferred(std::string_view line, const std::string& name) {
  const auto parts = ReadLine(line, trace_lines::kPreferred, {{2, name}});
  if (!parts) return std::nullopt;
  return Preference{(*parts)[0], (*parts)[1], (*parts)[2]};
}

struct Match {
  std::string file;
  std::string how;
};

std::optional<Match> ReadMatched(std::string_view line, const std::string& name) {
  const auto parts = ReadLine(line, trace_lines::kMatched, {{0, name}});
  if (!parts) return std::nullopt;
  return Match{(*parts)[0], (*parts)[1]};
}

bool ReadBatchSize(std::string_view line, int64_t& count) {
  const auto parts = ReadLine(line, trace_lines::kReadyToActivate);
  if (!parts) return false;
  const std::string& number = parts->front();
  return std::from_chars(number.data(), number.data() + number.size(), count).ec == std::errc();
}

// Returns the code that a line reports for the document; empty for any other line.
std::string CodeOf(std::string_view line, std::string_view format, const std::string& path) {
  const auto parts = ReadLine(line, format, {{0, path}});
  return parts ? parts->front() : "";
}

}  // namespace

TraceRecorder::TraceRecorder() { platform::SetTraceSink(&TraceRecorder::Take, this); }
TraceRecorder::~TraceRecorder() { platform::SetTraceSink(nullptr, nullptr); }

void TraceRecorder::Take(void* context, int indentChange, std::string_view line) {
  auto* self = static_cast<TraceRecorder*>(context);
  line = line.substr(0, line.find_last_not_of('\n') + 1);
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
  text += line;
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
    const std::string code = CodeOf(lines_[i].text, trace_lines::kSlugWritten, path);
    if (!code.empty()) hasFailed = code != "00000000";
  }
  return hasFailed;
}

bool TraceRecorder::HasFailedToLookUpFonts(const std::string& path) const {
  constexpr const char* kNoFonts = "-43";
  const std::lock_guard lock(mutex_);
  for (size_t i = FirstSinceMark(); i < lines_.size(); ++i) {
    const std::string code = CodeOf(lines_[i].text, trace_lines::kFontsLookedUp, path);
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
