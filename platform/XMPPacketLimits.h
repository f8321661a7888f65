// Whether metadata that came from a document is small enough to be worked on in this process: the XMP library goes down
// into it by recursion, and looks up each property among all those of its group.
#pragma once

#include <string>

namespace platform {

// Empty if it is; else what it has too much of, as the end of a sentence: "has more than 2000 properties in one group".
std::string DescribeExcess(const std::string& packet);

}  // namespace platform
