#include "platform/XMPFormat.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/ByteSource.h"
#include "platform/Descriptor.h"

namespace platform {

using namespace std::string_view_literals;

XMPFormat FindXMPFormat(const std::string& path) {
  static constexpr struct {
    std::string_view beginning;
    XMPFormat format;
  } kFormats[] = {
      {"8BPS"sv, XMPFormat::kLayered},
      {"\xFF\xD8\xFF"sv, XMPFormat::kJPEG},
      {"II*\0"sv, XMPFormat::kTIFF},
      {"MM\0*"sv, XMPFormat::kTIFF},
      {"\x89PNG\r\n\x1A\n"sv, XMPFormat::kPNG},
      {"%!PS-Adobe-"sv, XMPFormat::kPostScript},
      {"\xC5\xD0\xD3\xC6"sv, XMPFormat::kPostScript},
  };
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  char bytes[16];
  const ssize_t got = file ? pread(file.Get(), bytes, sizeof bytes, 0) : 0;
  const std::string_view head(bytes, static_cast<size_t>(std::max<ssize_t>(got, 0)));
  for (const auto& [beginning, format] : kFormats) {
    if (head.starts_with(beginning)) return format;
  }
  return XMPFormat::kOther;
}

bool MayHavePacket(const std::string& path) {
  // The identifier of all packets, or the beginning of it in 16 or 32 bits a character, whatever their order.
  constexpr std::string_view kMarks[] = {"W5M0MpCehiHzreSzNTczkc9d"sv, "W\0005\0M\0000\0M\0p"sv,
                                         "W\0\0\0005\0\0\0M\0\0\0000"sv};
  constexpr size_t kLongest = 24;
  ByteSource bytes;
  if (bytes.Open(path) || bytes.Size() == 0) return true;
  uint64_t at = 0;
  while (true) {
    const std::string_view view = bytes.View(at, kLongest);
    for (const std::string_view mark : kMarks) {
      if (memmem(view.data(), view.size(), mark.data(), mark.size())) return true;
    }
    if (view.size() < kLongest) return static_cast<bool>(bytes.Error());
    at += view.size() - (kLongest - 1);  // a mark may continue in the next view
  }
}

const char* ExtensionOf(XMPFormat format) {
  switch (format) {
    case XMPFormat::kLayered: return ".psd";
    case XMPFormat::kJPEG: return ".jpg";
    case XMPFormat::kTIFF: return ".tif";
    case XMPFormat::kPNG: return ".png";
    case XMPFormat::kPostScript: return ".eps";
    case XMPFormat::kOther: break;
  }
  return "";
}

}  // namespace platform
