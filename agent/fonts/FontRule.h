// A rule over fonts: the query of a smart set.
//
//   rule       all { "or" all }
//   all        condition { "and" condition }
//   condition  "not" condition | "(" rule ")" | FLAG | FIELD OPERATOR VALUE
//
//   FIELD                                            OPERATOR             VALUE
//   family style name foundry kind version path      =  !=  ~  !~         a text; "~" means contains
//   design                                           =  !=                serif slab sans script decorative symbol
//                                                                         unknown
//   script language                                  =  !=                Cyrl, ru; "=" means covers
//   weight width size age                            =  !=  <  <=  >  >=  a number; size is in bytes, K or M may
//                                                                         follow; age is in days since the font was
//                                                                         added
//   added                                            =  !=  <  <=  >  >=  a day, 2026-01-31
//   FLAG: italic, monospaced, variable, coloured, active
//
// Texts are compared without regard to case; "name" is the PostScript name. A value is a word, or is in double quotes,
// where a backslash stands before a quote or backslash. Example:
//   (family ~ garamond or design = serif) and weight >= 600 and language = cs and not variable
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "agent/fonts/RuleFields.h"

namespace agent {

// The message says what is wrong and where, for people.
struct RuleError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class FontRule {
 public:
  // Throws RuleError. A rule has at most kLongest bytes and kDeepest levels.
  static FontRule Parse(std::string_view text);
  bool Matches(const RuleSubject& subject) const { return test_(subject); }

  static constexpr size_t kLongest = 4096;
  static constexpr int kDeepest = 50;

 private:
  explicit FontRule(RuleTest test) : test_(std::move(test)) {}
  RuleTest test_;
};

}  // namespace agent
