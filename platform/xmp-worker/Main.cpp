// xmp-worker: runs the XMP library on documents in a separate process, because a document can make it loop, run out of
// memory or crash. platform/XMPWorker.cpp starts the process. It answers the requests on its standard input (a socket)
// one by one and ends when the other side closes.
#include <exempi/xmp.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "platform/ChildLimits.h"
#include "platform/Descriptor.h"
#include "platform/XMPLibrary.h"
#include "platform/XMPMessages.h"

namespace platform {

namespace {

constexpr int kSocket = STDIN_FILENO;

class OpenFile {
 public:
  OpenFile(const std::string& path, XmpOpenFileOptions access, bool scans) {
    const int way = scans ? XMP_OPEN_USEPACKETSCANNING : XMP_OPEN_USESMARTHANDLER;
    file_ = xmp_files_new();
    isOpen_ = file_ && xmp_files_open(file_, path.c_str(), static_cast<XmpOpenFileOptions>(access | way));
  }
  ~OpenFile() {
    if (isOpen_) Close();
    if (file_) xmp_files_free(file_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  explicit operator bool() const { return isOpen_; }
  XmpFilePtr Get() const { return file_; }
  bool Close() {
    isOpen_ = false;
    return xmp_files_close(file_, XMP_CLOSE_NOOPTION);
  }

 private:
  XmpFilePtr file_ = nullptr;
  bool isOpen_ = false;
};

XMPMessage Answer(XMPAnswer kind, uint32_t number = 0, std::string packet = "") {
  return {static_cast<uint32_t>(kind), number, 0, "", std::move(packet)};
}

XMPMessage Refused() { return Answer(XMPAnswer::kRefused, static_cast<uint32_t>(xmp_get_error())); }

XMPMessage Read(const OpenFile& file) {
  uint32_t flags = 0;
  xmp_files_get_file_info(file.Get(), nullptr, nullptr, nullptr, reinterpret_cast<XmpFileFormatOptions*>(&flags));
  const MetaHandle meta(xmp_files_get_new_xmp(file.Get()));
  const bool canGrow = (flags & (meta ? XMP_FMT_CAN_EXPAND : XMP_FMT_CAN_INJECT_XMP)) != 0;
  std::string packet;
  if (meta && !SerializeMeta(meta.get(), packet)) return Refused();
  if (packet.size() > kLargestXMPText) return Answer(XMPAnswer::kTooLarge);
  return Answer(XMPAnswer::kDone, canGrow, std::move(packet));
}

XMPMessage Put(OpenFile& file, const std::string& packet, bool isTried) {
  const MetaHandle meta(xmp_new(packet.data(), packet.size()));
  const MetaHandle old(xmp_files_get_new_xmp(file.Get()));  // the library asks for what is there before it tells
  if (!meta || !xmp_files_can_put_xmp(file.Get(), meta.get())) return Refused();
  if (isTried) return Answer(XMPAnswer::kDone);
  return xmp_files_put_xmp(file.Get(), meta.get()) && file.Close() ? Answer(XMPAnswer::kDone) : Refused();
}

XMPMessage Serve(const XMPMessage& request) {
  const auto question = static_cast<XMPQuestion>(request.kind);
  if (question == XMPQuestion::kPut) {
    OpenFile file(request.path, XMP_OPEN_FORUPDATE, request.scans);
    return file ? Put(file, request.packet, false) : Answer(XMPAnswer::kNotOpened);
  }
  // Use a name without an extension, because the library looks at extensions before the content.
  const bool reads = question == XMPQuestion::kRead;
  const Descriptor source(open(request.path.c_str(), (reads ? O_RDONLY : O_RDWR) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!source) return Answer(XMPAnswer::kNotOpened);
  const std::string name = "/proc/self/fd/" + std::to_string(source.Get());
  OpenFile file(name, reads ? XMP_OPEN_READ : XMP_OPEN_FORUPDATE, request.scans);
  if (!file) return Answer(XMPAnswer::kNotOpened);
  return reads ? Read(file) : Put(file, request.packet, true);
}

}  // namespace

}  // namespace platform

int main() {
  using namespace platform;
  constexpr auto kForEver = std::chrono::steady_clock::time_point::max();
  LimitChild(kXMPWorkerMemory);
  if (!xmp_init()) return 1;
  XMPMessage request;
  while (ReceiveXMPMessage(kSocket, request, kForEver)) {
    LimitChildTime(request.number);
    const XMPMessage answer = Serve(request);
    EndChildTime();
    if (!SendXMPMessage(kSocket, answer)) return 1;
  }
  return 0;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// A crash must end the sanitized worker with its signal, as the host expects, not with a report and a status.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options();
const char* __asan_default_options() { return "handle_segv=0"; }
const char* __tsan_default_options() { return "handle_segv=0"; }
// NOLINTEND(bugprone-reserved-identifier)
#endif
