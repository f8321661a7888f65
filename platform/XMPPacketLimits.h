// Checks whether a document's metadata is small enough to process here: the XMP library recurses into it, and searches
// all properties of a group for each property.
#pragma once

#include <string>

namespace platform {

// Empty if it is small enough; otherwise the end of a sentence: "has more than 2000 properties in one group". Damage,
// too, is an excess unless it is tolerated; then the packet is checked up to the damage.
enum class PacketDamage { kIsExcess, kIsTolerated };
std::string DescribeExcess(const std::string& packet, PacketDamage damage = PacketDamage::kIsExcess);

}  // namespace platform
