#include "host/console/TraceRecorder.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/Trace.h"

namespace console {

namespace {

constexpr size_t kMostLines = 20000;
constexpr int kDeepest = 20;

struct Statement {
  uint32_t fontID = 0;
  std::string_view rest;
};

// "PREFIX 'NAME' INFIX font ID: REST"
std::optional<Statement> ReadStatement(std::string_view line, std::string_view before, std::string_view after) {
  const size_t at = line.find(before);
  if (at == std::string_view::npos) return std::nullopt;
  line.remove_prefix(at + before.size());
  if (!line.starts_with(after)) return std::nullopt;
  line.remove_prefix(after.size());
  Statement statement;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), statement.fontID);
  line.remove_prefix(static_cast<size_t>(end - line.data()));
  if (error != std::errc() || !line.starts_with(": ")) return std::nullopt;
  statement.rest = line.substr(2);
  return statement;
}

bool ReadBatchSize(std::string_view line, int64_t& count) {
  constexpr std::string_view kBefore = "Ready to batch-activate ";
  return line.starts_with(kBefore) &&
         std::from_chars(line.data() + kBefore.size(), line.data() + line.size(), count).ec == std::errc();
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
  lines_.push_back(std::move(text));
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
  const std::string matched = "Matched '" + postScriptName + "'";
  const std::string best = "Best candidate for '" + postScriptName + "'";
  Reason reason;
  std::string stage;
  for (size_t i = mark_ > dropped_ ? mark_ - dropped_ : 0; i < lines_.size(); ++i) {
    if (const auto statement = ReadStatement(lines_[i], best, " is font ")) {
      stage = statement->rest;
    } else if (const auto match = ReadStatement(lines_[i], matched, " with font ")) {
      reason = {match->fontID, std::string(match->rest), stage};
      stage.clear();
    }
  }
  return reason;
}

std::vector<std::string> TraceRecorder::LastLines(size_t most) const {
  const std::lock_guard lock(mutex_);
  const size_t count = std::min(most, lines_.size());
  return {lines_.end() - static_cast<std::ptrdiff_t>(count), lines_.end()};
}

}  // namespace console
