// What all boxes have in common: making one, and what its answer means. Boxes reach the user through platform::RunBox.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "platform/Value.h"

namespace boxes {

// A box of this kind with the localized texts of the two keys (null: none) and of the buttons.
platform::Dictionary MakeBox(const char* kind, const char* headerKey, const char* messageKey,
                             std::initializer_list<const char*> buttonKeys);

inline constexpr int32_t kClosed = 0;
// Runs the box; the chosen button, from 1, or kClosed. An answer beyond the box's buttons counts as closed.
int32_t ButtonOf(const platform::Dictionary& box, const platform::Dictionary& answer);

// A number that a record holds as decimal text or as an integer.
int64_t NumberOf(const platform::Dictionary& record, std::string_view key, int64_t otherwise);
// A flag that a dictionary holds as a boolean or, as the plug-in stores them, as a number.
bool FlagOf(const platform::Dictionary& dictionary, std::string_view key, bool otherwise);

// A copy of the font record with a "Description" for the reader: foundry, version, kind, workgroup, file name, whether it is active.
// In it the possible replacements are copies of the same kind.
platform::Dictionary DescribeFont(const platform::Dictionary& record);
// Each record of the array described; what is no dictionary is left out.
platform::Array DescribeFonts(const platform::Array& records);

}  // namespace boxes
