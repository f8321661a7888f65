// The XML form of property lists, as the platform publishes it (plist 1.0).
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

namespace platform {

// Arrays and dictionaries in each other, at most.
inline constexpr int kDeepestPropertyList = 200;

// The XML text of a value; empty for a null value and for one that XML cannot hold: with a null entry, with control
// characters other than tabulators and line ends in a text or key, or nested deeper than kDeepestPropertyList.
PLATFORM_API std::string CreateXMLPropertyList(const Value& value);

struct PropertyListResult {
  Value value;        // null on failure; containers and leaves are new and can be changed
  std::string error;  // one line, empty on success
};

// Reads XML in UTF-8 (and nothing else); the outermost element is "plist" or the value's own. A list that is not exactly
// as the format says is refused as a whole, with the line where it goes wrong: also one with dates or UIDs, with entities
// of its own, or nested deeper than kDeepestPropertyList. Of equal keys the last counts.
PLATFORM_API PropertyListResult ParseXMLPropertyList(std::string_view xml);

}  // namespace platform
