// Base64 with the standard alphabet and "=" padding (RFC 4648, section 4).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// On one line, without a line end.
PLATFORM_API std::string EncodeBase64(std::string_view bytes);
// Ignores white space anywhere. Returns nothing if the text is not whole Base64.
PLATFORM_API std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace platform
