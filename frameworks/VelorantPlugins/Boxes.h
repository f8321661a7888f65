// Shared by all boxes: creating one and reading its answer. Boxes reach the user through platform::RunBox.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "platform/Value.h"

namespace boxes {

// Creates a box of this kind with the localized texts of the two keys (null for none) and of the buttons.
platform::Dictionary MakeBox(const char* kind, const char* headerKey, const char* messageKey,
                             std::initializer_list<const char*> buttonKeys);

inline constexpr int32_t kClosed = 0;
// Returns the button that the answer chose, from 1, or kClosed. A number beyond the box's buttons counts as closed.
int32_t ButtonOf(const platform::Dictionary& box, const platform::Dictionary& answer);

// Reads a number that is stored as decimal text or as an integer.
int64_t NumberOf(const platform::Dictionary& record, std::string_view key, int64_t otherwise);
// Reads a flag that is stored as a boolean or, as the plug-in does, as a number.
bool FlagOf(const platform::Dictionary& dictionary, std::string_view key, bool otherwise);

// Copies the font record and adds a "Description" for the user: foundry, version, kind, workgroup, file name, and
// whether the font is active. Describes the possible replacements, too.
platform::Dictionary DescribeFont(const platform::Dictionary& record);
// Describes each record of the array; skips entries that are not dictionaries.
platform::Array DescribeFonts(const platform::Array& records);

}  // namespace boxes
