// The font for a name that its own font can't show.
#pragma once

#include <optional>
#include <string>

namespace agent {

struct FallbackFont {
  std::string path;
  int faceIndex = 0;
};

// Asks fontconfig for a sans-serif font with the characters of the text, other than the file at `notPath`. If there is
// none that has them all, returns the closest; if there is no font at all, nothing.
std::optional<FallbackFont> FindFallbackFont(const std::string& utf8, const std::string& notPath);

}  // namespace agent
