// Conversion between any two character sets that the C library's iconv knows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

struct IconvResult {
  std::string text;     // what was converted, up to the end of the input or up to the failure
  int openError = 0;    // errno if iconv does not know the conversion; nothing was converted
  int error = 0;        // EILSEQ: the next character cannot be converted; EINVAL: the input ends within a character
  size_t replaced = 0;  // characters for which the C library put in a similar one
};

// Converts bytes of the character set `from` to `to`, both named as iconv_open takes them. Any thread.
//
// Stops at the first character that cannot be converted, unless "//IGNORE" is appended to `to`. Then whatever cannot be
// converted is left out and the conversion succeeds. That covers bytes that are malformed in `from`, characters that
// `to` lacks, and a last character that is cut off.
PLATFORM_API IconvResult ConvertWithIconv(std::string_view bytes, const char* to, const char* from);

}  // namespace platform
