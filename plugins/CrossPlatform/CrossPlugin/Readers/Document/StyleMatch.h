// Finds the fonts of the library for a document that names families and styles.
#pragma once

#include "Readers/Document/FontStyle.h"
#include "platform/Value.h"

// Returns the agent's record of the face of the family that is nearest to the style, as CSS orders faces: by width, then
// slant, then weight. Null if the library does not have the family, or there is no agent.
platform::Dictionary FindFontOfStyle(const FontStyle& style);
