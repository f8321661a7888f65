#include "platform/XMPComparison.h"

#include <exempi/xmpconsts.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace platform {

namespace {

// The library sets these properties itself when it writes or reads.
bool IsOwnedByLibrary(const std::string& schema, std::string_view path) {
  if (schema == NS_PHOTOSHOP) return path.ends_with(":LegacyIPTCDigest");
  if (schema != NS_XAP) return false;
  return path.ends_with(":MetadataDate") || path.ends_with(":ModifyDate") || path.ends_with(":CreatorTool") ||
         path.ends_with(":CreateDate");
}

// Many files also store these as Exif, with fewer digits in numbers.
bool IsRoundedByFiles(const std::string& schema) { return schema == NS_EXIF || schema == NS_TIFF; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Equal except for the last digits of numbers.
bool AreNearlyEqual(const std::string& one, const std::string& other) {
  constexpr double kPrecision = 1e-5;
  const char *a = one.c_str(), *b = other.c_str();
  while (*a && *b) {
    if (IsDigit(*a) && IsDigit(*b)) {
      char *endOfA = nullptr, *endOfB = nullptr;
      const double x = std::strtod(a, &endOfA), y = std::strtod(b, &endOfB);
      if (std::abs(x - y) > kPrecision * std::max(1.0, std::abs(x))) return false;
      a = endOfA;
      b = endOfB;
    } else if (*a++ != *b++) {
      return false;
    }
  }
  return *a == *b;
}

bool Holds(const PropertyMap& list, const PropertyMap::value_type& property) {
  const auto found = list.find(property.first);
  if (found == list.end()) return false;
  const std::string &wanted = property.second, &text = found->second;
  return wanted == text || (IsRoundedByFiles(property.first.first) && AreNearlyEqual(wanted, text));
}

}  // namespace

std::string FindLostProperty(const PropertyMap& original, const PropertyMap& wanted, const PropertyMap& found) {
  const auto isCompared = [](const PropertyMap::value_type& property) {
    return !IsOwnedByLibrary(property.first.first, property.first.second);
  };
  for (const auto& property : wanted) {
    if (isCompared(property) && !Holds(found, property)) return property.first.second;
  }
  for (const auto& property : original) {
    const bool wasTakenOut = !wanted.contains(property.first);
    if (isCompared(property) && wasTakenOut && found.contains(property.first)) return property.first.second;
  }
  return "";
}

}  // namespace platform
