#include "frameworks/VelorantPluginInterface/RecentFonts.h"

#include <algorithm>

#include "platform/Clock.h"

namespace plugin_interface {

namespace {
constexpr size_t kMostAnswers = 8;
}

// Leaked on purpose: a reader thread may still run when the process ends.
RecentFonts& RecentFonts::Shared() {
  static auto* shared = new RecentFonts;
  return *shared;
}

void RecentFonts::Clear() {
  answers_.clear();
  fonts_.clear();
}

void RecentFonts::ForgetOld() {
  if (platform::Clock::Steady() - since_ >= kKeptSeconds) Clear();
}

std::optional<RecentFonts::Numbers> RecentFonts::IDsFor(const Question& question) {
  const std::lock_guard lock(mutex_);
  ForgetOld();
  const auto found = std::ranges::find(answers_, question, &Answer::question);
  return found == answers_.end() ? std::nullopt : std::optional(found->fontIDs);
}

std::optional<RecentFonts::Record> RecentFonts::RecordOf(uint32_t fontID) {
  const std::lock_guard lock(mutex_);
  ForgetOld();
  const auto found = fonts_.find(fontID);
  return found == fonts_.end() ? std::nullopt : std::optional(found->second.record);
}

std::optional<RecentFonts::Numbers> RecentFonts::FlagsOf(const Numbers& fontIDs) {
  const std::lock_guard lock(mutex_);
  ForgetOld();
  Numbers flags;
  for (const uint32_t id : fontIDs) {
    const auto found = fonts_.find(id);
    if (found == fonts_.end()) return std::nullopt;
    flags.push_back(found->second.isActive);
  }
  return flags;
}

uint64_t RecentFonts::Generation() {
  const std::lock_guard lock(mutex_);
  return generation_;
}

void RecentFonts::Remember(uint64_t generation, const Question& question,
                           const agent_protocol::calls::LookUpFonts::Found& found) {
  const std::lock_guard lock(mutex_);
  if (generation != generation_) return;
  ForgetOld();
  if (answers_.size() == kMostAnswers) Clear();
  if (answers_.empty()) since_ = platform::Clock::Steady();
  answers_.push_back({question, found.fontIDs});
  const size_t count = std::min({found.records.size(), found.flags.size(), found.fontIDs.size()});
  for (size_t i = 0; i < count; ++i) fonts_[found.fontIDs[i]] = {found.records[i], found.flags[i]};
}

void RecentFonts::Forget() {
  const std::lock_guard lock(mutex_);
  ++generation_;
  Clear();
}

}  // namespace plugin_interface
