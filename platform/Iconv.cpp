#include "platform/Iconv.h"

#include <iconv.h>

#include <cerrno>

namespace platform {

namespace {

class Handle {
 public:
  Handle(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Handle() {
    if (IsOpen()) iconv_close(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }
  iconv_t Get() const { return handle_; }

 private:
  iconv_t handle_;
};

}  // namespace

IconvResult ConvertWithIconv(std::string_view bytes, const char* to, const char* from) {
  IconvResult result;
  const Handle handle(to, from);
  if (!handle.IsOpen()) {
    result.openError = errno;
    return result;
  }
  const bool isIgnoring = std::string_view(to).find("//IGNORE") != std::string_view::npos;
  std::string buffer(bytes.size() + 3, '\0');
  char* next = const_cast<char*>(bytes.data());
  size_t left = bytes.size();
  while (left > 0) {
    char* end = buffer.data();
    size_t room = buffer.size();
    const size_t leftBefore = left;
    const size_t replaced = iconv(handle.Get(), &next, &left, &end, &room);
    const int error = replaced == static_cast<size_t>(-1) ? errno : 0;
    result.text.append(buffer.data(), buffer.size() - room);
    if (error == 0) {
      result.replaced += replaced;
    } else if (error == E2BIG && room < buffer.size()) {
      continue;  // the buffer is empty again
    } else if (!isIgnoring || error == E2BIG) {
      result.error = error;  // E2BIG: this character fits no buffer
      break;
    } else if (error == EINVAL) {
      break;  // the rest is an incomplete character
    } else if (left == leftBefore) {
      ++next, --left;
    }  // otherwise EILSEQ: the C library dropped what it could not convert
  }
  return result;
}

}  // namespace platform
