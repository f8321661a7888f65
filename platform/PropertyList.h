// The XML form of property lists, as the platform publishes it (plist 1.0).
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

namespace platform {

// The greatest nesting of arrays and dictionaries.
inline constexpr int kDeepestPropertyList = 200;

// Converts a value to XML. Empty for null and for a value that XML cannot represent: with a null entry, with control
// characters other than tab and line ends in a text or key, or nested deeper than kDeepestPropertyList.
PLATFORM_API std::string CreateXMLPropertyList(const Value& value);

struct PropertyListResult {
  Value value;        // null on failure; containers and leaves are new and may be changed
  std::string error;  // one line, empty on success
};

// Parses XML in UTF-8 (no other encoding). The outermost element is "plist" or the value's own. Refuses a list that
// violates the format, with the line of the fault: also dates, UIDs, entities of its own, and nesting deeper than
// kDeepestPropertyList. The last of equal keys counts.
PLATFORM_API PropertyListResult ParseXMLPropertyList(std::string_view xml);

}  // namespace platform
