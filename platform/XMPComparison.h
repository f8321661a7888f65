// Checks whether a write of metadata reached the file. The text of the metadata cannot be compared: the library
// regroups properties when it reads them, adds some of its own, and keeps what a camera wrote in the file's own form.
#pragma once

#include <string>

#include "platform/XMPLibrary.h"

namespace platform {

// Returns the path of a property that `found` should contain but does not, or should not contain any more; empty if
// there is none. `original` is the file's metadata before `wanted` was written; `found` was read back afterwards.
std::string FindLostProperty(const PropertyMap& original, const PropertyMap& wanted, const PropertyMap& found);

}  // namespace platform
