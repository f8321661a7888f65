// Conversion between any two character sets that the C library's iconv knows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

struct IconvResult {
  std::string text;     // converted text, up to the end of the input or the failure
  int openError = 0;    // errno if iconv does not know the conversion; nothing was converted
  int error = 0;        // EILSEQ: the next character cannot be converted; EINVAL: the input ends within a character
  size_t replaced = 0;  // characters that the C library replaced by similar ones
};

// Converts bytes of the character set `from` to `to`, both with names for iconv_open. Thread-safe.
//
// Stops at the first character that cannot be converted, unless "//IGNORE" is appended to `to`: then it drops malformed
// bytes, characters that `to` lacks, and an incomplete last character, and succeeds.
PLATFORM_API IconvResult ConvertWithIconv(std::string_view bytes, const char* to, const char* from);

}  // namespace platform
