// The fields and flags of rules: how each compares. See FontRule.h for the form of values.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "agent/fonts/FontTable.h"

namespace agent {

struct RuleSubject {
  const Font& font;
  bool isActive = false;
  int64_t now = 0;  // seconds since 1970, as Font::added
};

using RuleTest = std::function<bool(const RuleSubject&)>;

bool IsRuleField(const std::string& word);
// Nothing if the word is no flag.
std::optional<RuleTest> FlagTest(const std::string& word);
// Nothing, with a line in `problem`, if the field does not know the operator or the value.
std::optional<RuleTest> FieldTest(const std::string& field, const std::string& comparison, const std::string& value,
                                  std::string& problem);

}  // namespace agent
