// What kind of letters a font has.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/Export.h"

namespace platform {

enum class FontDesign : uint8_t { kUnknown, kSerif, kSlab, kSans, kScript, kDecorative, kSymbol };

// The word for rules and reports: "serif"; "unknown" for kUnknown. The other way round, kUnknown for any other word.
PLATFORM_API std::string_view WordOf(FontDesign design);
PLATFORM_API FontDesign DesignOfWord(std::string_view word);

// The ten numbers by which PANOSE describes letters, as in the OS/2 table.
using Panose = std::array<uint8_t, 10>;
PLATFORM_API FontDesign DesignOfPanose(const Panose& panose);

}  // namespace platform
