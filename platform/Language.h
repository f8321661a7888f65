// Which languages the user reads.
#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

// Language codes of ISO 639 in lower case ("de", "ja"), the preferred one first, without repetition. They come from
// LC_ALL, LC_MESSAGES or LANG, whichever is set first, and from LANGUAGE before it; as in gettext, LANGUAGE counts only
// if the locale is not "C" or "POSIX", and these give no language. Read afresh at each call.
PLATFORM_API std::vector<std::string> PreferredLanguages();

}  // namespace platform
