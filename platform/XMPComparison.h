// Whether a write of metadata reached the file. The text of the metadata can't tell: the library groups properties anew
// when it reads them, adds some of its own and keeps what a camera wrote in the file's own form as well.
#pragma once

#include <string>

#include "platform/XMPLibrary.h"

namespace platform {

// The path of a property that `found` should hold and doesn't, or should no longer hold; empty if there is none.
// `original` is what the file held before `wanted` was put; `found` was read back after it.
std::string FindLostProperty(const PropertyMap& original, const PropertyMap& wanted, const PropertyMap& found);

}  // namespace platform
