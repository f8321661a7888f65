// The languages that the user prefers.
#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

// Returns ISO 639 language codes in lower case ("de", "ja"), each once, the preferred one first. The locale is LC_ALL,
// LC_MESSAGES or LANG, whichever is set first; the languages of LANGUAGE precede it. As in gettext, the locales "C" and
// "POSIX" mean no language and disable LANGUAGE. Empty if no language is set. Reads the environment at each call.
PLATFORM_API std::vector<std::string> PreferredLanguages();

}  // namespace platform
