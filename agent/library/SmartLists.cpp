#include "agent/library/SmartLists.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "agent/fonts/FontRecord.h"
#include "agent/fonts/ShownText.h"
#include "platform/Clock.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

enum BuiltIn : uint32_t { kAll = 1, kActive = 2, kInOpenDocuments = 3, kRecentlyAdded = 4 };
constexpr int64_t kRecently = int64_t{30} * 86400;  // seconds

struct BuiltInList {
  BuiltIn id;
  const char* name;
};
constexpr BuiltInList kBuiltIn[] = {
    {kAll, "All"}, {kActive, "Active"}, {kInOpenDocuments, "In open documents"}, {kRecentlyAdded, "Recently added"}};

// A font with the name that it is sorted by. There are tens of thousands, and each is compared many times.
struct NamedFont {
  std::string name;
  const Font* font;

  bool operator<(const NamedFont& other) const {
    const int order = platform::CompareCaseless(name, other.name);
    return order != 0 ? order < 0 : font->id < other.font->id;
  }
};

// On one line.
std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (const char c : WithoutControls(name, " ")) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace

std::vector<SmartList> SmartLists::All() const {
  std::vector<SmartList> lists;
  for (const BuiltInList& list : kBuiltIn) lists.push_back({list.id, list.name, {}});
  std::ranges::move(parts_.store.SmartLists(), std::back_inserter(lists));
  return lists;
}

std::optional<SmartList> SmartLists::Find(uint32_t id) const {
  for (const BuiltInList& list : kBuiltIn) {
    if (list.id == id) return SmartList{id, list.name, {}};
  }
  return parts_.store.FindSmartList(id);
}

template <class Belongs>
std::vector<const Font*> SmartLists::FontsThat(const Belongs& belong) const {
  std::vector<NamedFont> named;
  parts_.table.ForEach([&](const Font& font) {
    if (belong(font)) named.push_back({DisplayName(font.face), &font});
  });
  std::sort(named.begin(), named.end());
  std::vector<const Font*> fonts;
  fonts.reserve(named.size());
  for (const NamedFont& entry : named) fonts.push_back(entry.font);
  return fonts;
}

std::vector<const Font*> SmartLists::FontsOf(const FontRule& rule) const {
  const int64_t now = platform::Clock::WholeSeconds();
  return FontsThat([&](const Font& font) { return rule.Matches({font, parts_.activations.IsActive(font), now}); });
}

std::vector<const Font*> SmartLists::FontsOf(const SmartListQuery& query) const {
  const std::set<uint32_t> workgroups(query.workgroupIDs.begin(), query.workgroupIDs.end());
  std::set<uint32_t> fontIDs;
  for (const FontSet& set : parts_.user.Sets()) {
    if (std::ranges::find(query.setIDs, set.id) != query.setIDs.end())
      fontIDs.insert(set.fontIDs.begin(), set.fontIDs.end());
  }
  std::vector<FontRule> rules;
  for (const uint32_t id : query.smartSetIDs) {
    if (const auto set = parts_.store.FindSmartSet(id)) rules.push_back(FontRule::Parse(set->rule));
  }
  const int64_t now = platform::Clock::WholeSeconds();
  return FontsThat([&](const Font& font) {
    if (workgroups.contains(font.workgroupID) || fontIDs.contains(font.id)) return true;
    const RuleSubject subject{font, !rules.empty() && parts_.activations.IsActive(font), now};
    return std::ranges::any_of(rules, [&](const FontRule& rule) { return rule.Matches(subject); });
  });
}

std::optional<std::vector<const Font*>> SmartLists::FontsOf(uint32_t listID) const {
  const int64_t now = platform::Clock::WholeSeconds();
  switch (listID) {
    case kAll: return FontsThat([](const Font&) { return true; });
    case kActive: return FontsThat([this](const Font& font) { return parts_.activations.IsActive(font); });
    case kInOpenDocuments:
      return FontsThat([this](const Font& font) { return parts_.activations.IsHeldForDocument(font.id); });
    case kRecentlyAdded: return FontsThat([now](const Font& font) { return now - font.added < kRecently; });
    default: break;
  }
  const auto list = parts_.store.FindSmartList(listID);
  if (!list) return std::nullopt;
  return FontsOf(list->query);
}

std::string SmartLists::TreeText(uint32_t id) const {
  const auto list = Find(id);
  if (!list) return "";
  std::string text = "smartlist " + std::to_string(id) + " " + Quoted(list->name) + "\n";
  for (const uint32_t workgroupID : list->query.workgroupIDs) {
    const Workgroup* workgroup = FindWorkgroup(parts_.workgroups, workgroupID);
    if (workgroup) text += "workgroup " + std::to_string(workgroupID) + " " + Quoted(workgroup->name) + "\n";
  }
  const std::vector<FontSet> sets = parts_.user.Sets();
  for (const uint32_t setID : list->query.setIDs) {
    const auto set = std::ranges::find(sets, setID, &FontSet::id);
    if (set != sets.end()) text += "set " + std::to_string(setID) + " " + Quoted(set->name) + "\n";
  }
  for (const uint32_t smartSetID : list->query.smartSetIDs) {
    const auto set = parts_.store.FindSmartSet(smartSetID);
    if (set)
      text += "smartset " + std::to_string(smartSetID) + " " + Quoted(set->name) + ": " +
              WithoutControls(set->rule, " ") + "\n";
  }
  return text;
}

}  // namespace agent
