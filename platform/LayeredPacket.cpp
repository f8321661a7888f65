#include "platform/LayeredPacket.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/Descriptor.h"

namespace platform {

namespace {

constexpr uint64_t kHeaderSize = 26;
constexpr uint32_t kLargestResources = 256u << 20;
constexpr uint32_t kPacketResource = 1060;

bool ReadAt(int file, uint64_t offset, std::string& bytes) {
  size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t got = pread(file, bytes.data() + have, bytes.size() - have, static_cast<off_t>(offset + have));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    have += static_cast<size_t>(got);
  }
  return true;
}

uint32_t Number(std::string_view bytes, size_t at, size_t width) {
  uint32_t number = 0;
  for (size_t i = 0; i < width; ++i) number = number << 8 | static_cast<uint8_t>(bytes[at + i]);
  return number;
}

bool ReadNumberAt(int file, uint64_t offset, uint32_t& number) {
  std::string bytes(4, '\0');
  if (!ReadAt(file, offset, bytes)) return false;
  number = Number(bytes, 0, 4);
  return true;
}

std::string Bytes(size_t number) {
  return {static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
          static_cast<char>(number)};
}

// The size of the resource at the beginning of the bytes with all that belongs to it; 0 if it doesn't end in them.
size_t ResourceSize(std::string_view bytes) {
  constexpr size_t kNameAt = 6;  // behind four characters and the number
  if (bytes.size() <= kNameAt) return 0;
  const size_t sizeAt = kNameAt + ((size_t{1} + static_cast<uint8_t>(bytes[kNameAt]) + 1) & ~size_t{1});
  if (bytes.size() < sizeAt + 4) return 0;
  const size_t end = sizeAt + 4 + Number(bytes, sizeAt, 4);
  if (end > bytes.size()) return 0;
  return end % 2 != 0 && end < bytes.size() ? end + 1 : end;  // padded, but for the last of some writers
}

std::string PacketResource(const std::string& packet) {
  std::string resource =
      "8BIM" + Bytes(kPacketResource).substr(2) + std::string(2, '\0') + Bytes(packet.size()) + packet;
  if (packet.size() % 2 != 0) resource.push_back('\0');
  return resource;
}

// The resources with the packet where the old one stands, or behind all others. False if they are damaged.
bool Renew(std::string_view resources, const std::string& packet, std::string& renewed) {
  const std::string added = PacketResource(packet);
  bool isAdded = false;
  while (!resources.empty()) {
    const size_t size = ResourceSize(resources);
    if (size == 0) return false;
    if (Number(resources, 4, 2) != kPacketResource) {
      renewed += resources.substr(0, size);
      if (renewed.size() % 2 != 0) renewed.push_back('\0');
    } else if (!isAdded) {
      renewed += added;
      isAdded = true;
    }
    resources.remove_prefix(size);
  }
  if (!isAdded) renewed += added;
  return true;
}

}  // namespace

bool PlanLayeredPacket(const std::string& path, const std::string& packet, Splice& splice, std::string* problem) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  uint32_t colors = 0, size = 0;
  std::string resources, renewed;
  *problem = path + ": its image resources are damaged";
  if (!file || !ReadNumberAt(file.Get(), kHeaderSize, colors)) return false;
  splice.at = kHeaderSize + 4 + colors;
  if (!ReadNumberAt(file.Get(), splice.at, size)) return false;
  if (size > kLargestResources) {
    *problem = path + ": its image resources are larger than " + std::to_string(kLargestResources >> 20) + " MiB";
    return false;
  }
  splice.length = 4 + size;
  resources.resize(size);
  if (!ReadAt(file.Get(), splice.at + 4, resources) || !Renew(resources, packet, renewed)) return false;
  splice.bytes = Bytes(renewed.size()) + renewed;
  problem->clear();
  return true;
}

}  // namespace platform
