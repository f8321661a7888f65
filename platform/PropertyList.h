// The XML form of property lists, as the platform publishes it (plist 1.0).
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

namespace platform {

// The XML text of a value; empty for a null value or one that holds a null entry.
PLATFORM_API std::string CreateXMLPropertyList(const Value& value);

struct PropertyListResult {
  Value value;        // null on failure; containers and leaves are new and can be changed
  std::string error;  // one line, empty on success
};

// Reads XML (and nothing else). Deep nesting, entity expansion and malformed UTF-8 are refused with an error.
PLATFORM_API PropertyListResult ParseXMLPropertyList(std::string_view xml);

}  // namespace platform
