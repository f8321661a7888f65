#include "agent/fonts/RuleFields.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <iterator>

#include "platform/TextEncoding.h"

namespace agent {

namespace {

using Test = RuleTest;
constexpr int64_t kSecondsOfDay = 86400;

struct TextField {
  const char* name;
  SharedText (*of)(const Font& font);
};
const TextField kTexts[] = {
    {"family", [](const Font& font) { return font.face.family; }},
    {"style", [](const Font& font) { return font.face.style; }},
    {"name", [](const Font& font) { return font.face.postScriptName; }},
    {"foundry", [](const Font& font) { return font.face.foundry; }},
    {"kind", [](const Font& font) { return font.face.kind; }},
    {"version", [](const Font& font) { return font.face.version; }},
    {"path", [](const Font& font) { return font.path; }},
};

struct NumberField {
  const char* name;
  int64_t (*of)(const RuleSubject& subject);
  std::optional<int64_t> (*read)(const std::string& value);
  const char* form;
};

std::optional<int64_t> ReadNumber(const std::string& value) {
  int64_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size() || number < 0) return std::nullopt;
  return number;
}

std::optional<int64_t> ReadBytes(const std::string& value) {
  constexpr int64_t kLargest = int64_t{1} << 40;
  const char unit = value.empty() ? '\0' : value.back();
  const int64_t factor = unit == 'K' || unit == 'k' ? 1 << 10 : unit == 'M' || unit == 'm' ? 1 << 20 : 1;
  const auto number = ReadNumber(factor == 1 ? value : value.substr(0, value.size() - 1));
  return number && *number <= kLargest ? std::optional(*number * factor) : std::nullopt;
}

// The number of the day since 1970, in UTC.
std::optional<int64_t> ReadDay(const std::string& value) {
  int year = 0, month = 0, day = 0, length = 0;
  if (std::sscanf(value.c_str(), "%4d-%2d-%2d%n", &year, &month, &day, &length) != 3) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (static_cast<size_t>(length) != value.size() || !date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count();
}

const NumberField kNumbers[] = {
    {"weight", [](const RuleSubject& s) { return int64_t{s.font.face.traits.weight}; }, ReadNumber, "a number"},
    {"width", [](const RuleSubject& s) { return int64_t{s.font.face.traits.width}; }, ReadNumber, "a number"},
    {"size", [](const RuleSubject& s) { return static_cast<int64_t>(s.font.fileSize); }, ReadBytes,
     "a number of bytes, such as 300K or 2M"},
    {"age", [](const RuleSubject& s) { return (s.now - s.font.added) / kSecondsOfDay; }, ReadNumber,
     "a number of days"},
    {"added", [](const RuleSubject& s) { return s.font.added / kSecondsOfDay; }, ReadDay, "a day, such as 2026-01-31"},
};

struct Flag {
  const char* name;
  bool (*of)(const RuleSubject& subject);
};
const Flag kFlags[] = {
    {"italic", [](const RuleSubject& s) { return s.font.face.traits.isItalic; }},
    {"monospaced", [](const RuleSubject& s) { return s.font.face.traits.isMonospaced; }},
    {"variable", [](const RuleSubject& s) { return s.font.face.traits.isVariable; }},
    {"coloured", [](const RuleSubject& s) { return s.font.face.traits.isColoured; }},
    {"active", [](const RuleSubject& s) { return s.isActive; }},
};

constexpr const char* kDesign = "design";
constexpr const char* kScript = "script";
constexpr const char* kLanguage = "language";

template <class Row, size_t count>
const Row* Find(const Row (&rows)[count], const std::string& name) {
  const Row* found = std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) { return row.name == name; });
  return found == std::end(rows) ? nullptr : found;
}

std::optional<Test> TextTest(const TextField& field, const std::string& comparison, const std::string& value) {
  const auto of = field.of;
  if (comparison == "=") {
    return [of, value](const RuleSubject& s) { return platform::EqualCaseless(of(s.font), value); };
  }
  if (comparison == "~") {
    return [of, value](const RuleSubject& s) { return platform::ContainsCaseless(of(s.font), value); };
  }
  return std::nullopt;
}

std::optional<Test> NumberTest(const NumberField& field, const std::string& comparison, int64_t value) {
  const auto of = field.of;
  if (comparison == "=") return [=](const RuleSubject& s) { return of(s) == value; };
  if (comparison == "<") return [=](const RuleSubject& s) { return of(s) < value; };
  if (comparison == "<=") return [=](const RuleSubject& s) { return of(s) <= value; };
  if (comparison == ">") return [=](const RuleSubject& s) { return of(s) > value; };
  if (comparison == ">=") return [=](const RuleSubject& s) { return of(s) >= value; };
  return std::nullopt;
}

std::optional<Test> DesignTest(const std::string& value) {
  const FontDesign design = platform::DesignOfWord(value);
  if (WordOf(design) != value) return std::nullopt;
  return [design](const RuleSubject& s) { return s.font.face.traits.design == design; };
}

std::optional<Test> ScriptTest(const std::string& value) {
  const int32_t script = u_getPropertyValueEnum(UCHAR_SCRIPT, value.c_str());
  if (script < 0 || script >= static_cast<int32_t>(FontCoverage::kMost)) return std::nullopt;
  return [script](const RuleSubject& s) {
    return s.font.face.coverage.Unpacked().scripts.test(static_cast<size_t>(script));
  };
}

std::optional<Test> LanguageTest(const std::string& value) {
  const auto& languages = KnownLanguages();
  const auto found = std::find(languages.begin(), languages.end(), value);
  if (found == languages.end()) return std::nullopt;
  const auto bit = static_cast<size_t>(found - languages.begin());
  return [bit](const RuleSubject& s) { return s.font.face.coverage.Unpacked().languages.test(bit); };
}

// Sets `problem` if the value is unknown; without a problem the field does not know the operator.
std::optional<Test> PositiveTest(const std::string& field, const std::string& comparison, const std::string& value,
                                 std::string& problem) {
  if (const TextField* text = Find(kTexts, field)) return TextTest(*text, comparison, value);
  if (const NumberField* number = Find(kNumbers, field)) {
    const auto read = number->read(value);
    if (!read) problem = "'" + field + "' is compared with " + number->form + ", not with '" + value + "',";
    return read ? NumberTest(*number, comparison, *read) : std::nullopt;
  }
  if (comparison != "=") return std::nullopt;
  auto test = field == kDesign ? DesignTest(value) : field == kScript ? ScriptTest(value) : LanguageTest(value);
  if (!test) problem = "there is no " + field + " '" + value + "',";
  return test;
}

}  // namespace

bool IsRuleField(const std::string& word) {
  return Find(kTexts, word) || Find(kNumbers, word) || word == kDesign || word == kScript || word == kLanguage;
}

std::optional<RuleTest> FlagTest(const std::string& word) {
  const Flag* flag = Find(kFlags, word);
  if (!flag) return std::nullopt;
  return Test(flag->of);
}

std::optional<RuleTest> FieldTest(const std::string& field, const std::string& comparison, const std::string& value,
                                  std::string& problem) {
  const bool isNegative = comparison.starts_with('!');
  const std::string positive = isNegative ? (comparison == "!=" ? "=" : comparison.substr(1)) : comparison;
  const bool isKnown = !isNegative || comparison == "!=" || comparison == "!~";
  auto test = isKnown ? PositiveTest(field, positive, value, problem) : std::nullopt;
  if (!test && problem.empty()) problem = "'" + field + "' has no operator '" + comparison + "',";
  if (!test || !isNegative) return test;
  return Test([inner = *test](const RuleSubject& subject) { return !inner(subject); });
}

}  // namespace agent
