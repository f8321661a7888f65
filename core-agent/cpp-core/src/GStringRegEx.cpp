// Regular expressions, part of GStringUtils, with ICU: its matcher keeps its state off the stack and accepts a time
// limit.
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>

#include "GStringUtils.h"
#include "platform/TextEncoding.h"

bool GStringUtils::IsRegExMatch(const std::string& text, const std::string& expression) {
  // In the matcher's units of some milliseconds. An expression that backtracks longer matches nothing.
  constexpr int32_t kTimeLimit = 200;
  if (!platform::IsValidUTF8(text) || !platform::IsValidUTF8(expression)) return false;
  if (text.size() > INT32_MAX || expression.size() > INT32_MAX) return false;
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString input = icu::UnicodeString::fromUTF8(text);
  const auto matcher = std::make_unique<icu::RegexMatcher>(icu::UnicodeString::fromUTF8(expression), input, 0, status);
  if (U_FAILURE(status)) return false;
  matcher->setTimeLimit(kTimeLimit, status);
  const bool isMatch = matcher->matches(status);
  return U_SUCCESS(status) && isMatch;
}
