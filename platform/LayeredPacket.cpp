#include "platform/LayeredPacket.h"

#include <fcntl.h>
#include <string_view>

#include "platform/BigEndian.h"
#include "platform/Descriptor.h"
#include "platform/FileBytes.h"

namespace platform {

namespace {

constexpr uint64_t kHeaderSize = 26;
constexpr uint32_t kLargestResources = 256u << 20;
constexpr uint32_t kPacketResource = 1060;
constexpr const char* kDamaged = ": its image resources are damaged";
constexpr std::string_view kEmptyPacket =
    "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
    " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
    "  <rdf:Description rdf:about=\"\"/>\n"
    " </rdf:RDF>\n"
    "</x:xmpmeta>\n"
    "<?xpacket end=\"w\"?>";

uint32_t Number(std::string_view bytes, size_t at, size_t width) {
  return static_cast<uint32_t>(ReadBigEndian(bytes, at, width));
}

bool ReadNumberAt(int file, uint64_t offset, uint32_t& number) {
  std::string bytes(4, '\0');
  if (ReadAllAt(file, offset, bytes)) return false;
  number = Number(bytes, 0, 4);
  return true;
}

std::string Bytes(size_t number) {
  std::string bytes;
  AppendBigEndian(bytes, number, 4);
  return bytes;
}

// The resource at the start of the bytes.
struct Resource {
  uint32_t id = 0;
  size_t data = 0, dataSize = 0;
  size_t size = 0;  // total size
};

// Returns false if it does not end within the bytes.
bool ReadResource(std::string_view bytes, Resource& resource) {
  constexpr size_t kNameAt = 6;  // after four characters and the number
  if (bytes.size() <= kNameAt) return false;
  const size_t sizeAt = kNameAt + ((size_t{1} + static_cast<uint8_t>(bytes[kNameAt]) + 1) & ~size_t{1});
  if (bytes.size() < sizeAt + 4) return false;
  resource = {Number(bytes, 4, 2), sizeAt + 4, Number(bytes, sizeAt, 4)};
  const size_t end = resource.data + resource.dataSize;
  if (end > bytes.size()) return false;
  resource.size = end % 2 != 0 && end < bytes.size() ? end + 1 : end;  // padded, except the last one of some writers
  return true;
}

std::string PacketResource(const std::string& packet) {
  std::string resource =
      "8BIM" + Bytes(kPacketResource).substr(2) + std::string(2, '\0') + Bytes(packet.size()) + packet;
  if (packet.size() % 2 != 0) resource.push_back('\0');
  return resource;
}

// Splits a packet into its two parts, between which there may be blanks. Returns false for another form.
bool SplitPacket(std::string_view packet, std::string_view& body, std::string_view& end) {
  const size_t at = packet.rfind("<?xpacket end=");
  if (at == std::string_view::npos) return false;
  body = packet.substr(0, at);
  end = packet.substr(at);
  while (!body.empty() && std::string_view(" \t\r\n").find(body.back()) != std::string_view::npos)
    body.remove_suffix(1);
  return true;
}

std::string JoinPacket(std::string_view body, size_t blanks, std::string_view end) {
  constexpr size_t kLine = 100;
  std::string packet(body);
  for (size_t i = 1; i <= blanks; ++i) packet.push_back(i % kLine == 0 || i == blanks ? '\n' : ' ');
  return packet.append(end);
}

// Pads the packet with blanks to the size. Returns false if it is too long.
bool FitPacket(const std::string& packet, size_t size, std::string& fitting) {
  std::string_view body, end;
  if (!SplitPacket(packet, body, end) || body.size() + end.size() > size) return false;
  fitting = JoinPacket(body, size - body.size() - end.size(), end);
  return true;
}

// Returns the resource with the new packet.
std::string RenewPacket(std::string_view resource, const Resource& old, const std::string& packet) {
  std::string fitting;
  if (!FitPacket(packet, old.dataSize, fitting)) return PacketResource(packet);
  return std::string(resource).replace(old.data, old.dataSize, fitting);
}

// Replaces the packet in the resources, or appends it. Of several packets it replaces the first, which is the one that
// the XMP library reads. Returns false if they are damaged.
bool Renew(std::string_view resources, const std::string& packet, std::string& renewed) {
  bool isAdded = false;
  while (!resources.empty()) {
    Resource resource;
    if (!ReadResource(resources, resource)) return false;
    const std::string_view bytes = resources.substr(0, resource.size);
    resources.remove_prefix(resource.size);
    const bool isRenewed = resource.id == kPacketResource && !isAdded;
    renewed += isRenewed ? RenewPacket(bytes, resource, packet) : std::string(bytes);
    isAdded = isAdded || isRenewed;
    if (renewed.size() % 2 != 0 && !resources.empty()) renewed.push_back('\0');
  }
  if (renewed.size() % 2 != 0 && !isAdded) renewed.push_back('\0');
  if (!isAdded) renewed += PacketResource(packet);
  return true;
}

// The section of the image resources, with the length before them.
struct Resources {
  uint64_t at = 0;  // in the file
  std::string bytes;
};

bool ReadResources(const std::string& path, Resources& resources, std::string* problem) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  uint32_t colors = 0, size = 0;
  *problem = path + kDamaged;
  if (!file || !ReadNumberAt(file.Get(), kHeaderSize, colors)) return false;
  resources.at = kHeaderSize + 4 + colors;
  if (!ReadNumberAt(file.Get(), resources.at, size)) return false;
  if (size > kLargestResources) {
    *problem = path + ": its image resources are larger than " + std::to_string(kLargestResources >> 20) + " MiB";
    return false;
  }
  resources.bytes.resize(4 + size_t{size});
  if (ReadAllAt(file.Get(), resources.at, resources.bytes)) return false;
  problem->clear();
  return true;
}

}  // namespace

bool FindLayeredPacket(const std::string& path, std::string& packet) {
  Resources resources;
  std::string problem;
  if (!ReadResources(path, resources, &problem)) return false;
  Resource resource;
  for (std::string_view left = std::string_view(resources.bytes).substr(4); ReadResource(left, resource);) {
    if (resource.id == kPacketResource) {
      packet = left.substr(resource.data, resource.dataSize);
      return true;
    }
    left.remove_prefix(resource.size);
  }
  return false;
}

bool PlanLayeredPacket(const std::string& path, const std::string& packet, Splice& splice, std::string* problem) {
  Resources resources;
  std::string renewed;
  if (!ReadResources(path, resources, problem)) return false;
  if (!Renew(std::string_view(resources.bytes).substr(4), packet, renewed)) {
    *problem = path + kDamaged;
    return false;
  }
  splice = {resources.at, std::move(resources.bytes), Bytes(renewed.size()) + renewed};
  return true;
}

bool MakePacketRoom(std::string_view resources, size_t room, std::string& roomy) {
  std::string_view body = kEmptyPacket, end;
  for (std::string_view left = resources; !left.empty();) {
    Resource resource;
    if (!ReadResource(left, resource)) return false;
    if (resource.id == kPacketResource) {
      body = left.substr(resource.data, resource.dataSize);
      break;
    }
    left.remove_prefix(resource.size);
  }
  const size_t size = body.size();
  if (!SplitPacket(body, body, end) || size >= body.size() + room + end.size()) return false;
  roomy.clear();
  return Renew(resources, JoinPacket(body, room, end), roomy);
}

}  // namespace platform
