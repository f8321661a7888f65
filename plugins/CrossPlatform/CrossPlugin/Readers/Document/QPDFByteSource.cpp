#include "Readers/Document/QPDFByteSource.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <system_error>

std::string_view QPDFByteSource::View(size_t least) {
  const std::string_view view = mBytes.View(static_cast<uint64_t>(mPosition), least);
  if (mBytes.Error()) throw std::system_error(mBytes.Error());
  return view;
}

qpdf_offset_t QPDFByteSource::findAndSkipNextEOL() {
  constexpr const char* kLineEnds = "\r\n";
  for (std::string_view view = View(1); !view.empty(); view = View(1)) {
    const size_t at = view.find_first_of(kLineEnds);
    if (at == std::string_view::npos) {
      mPosition += static_cast<qpdf_offset_t>(view.size());
      continue;
    }
    mPosition += static_cast<qpdf_offset_t>(at);
    const qpdf_offset_t end = mPosition;
    do {
      ++mPosition;
      view = View(1);
    } while (!view.empty() && std::strchr(kLineEnds, view[0]) && view[0] != 0);
    return end;
  }
  return mPosition;
}

void QPDFByteSource::seek(qpdf_offset_t offset, int whence) {
  qpdf_offset_t from = 0;
  if (whence == SEEK_CUR) from = mPosition;
  if (whence == SEEK_END) from = static_cast<qpdf_offset_t>(mBytes.Size());
  if (offset > std::numeric_limits<qpdf_offset_t>::max() - from || from + offset < 0) {
    throw std::runtime_error("an offset that lies outside of the file");
  }
  mPosition = from + offset;
}

size_t QPDFByteSource::read(char* buffer, size_t length) {
  last_offset = mPosition;
  const std::string_view view = View(length).substr(0, length);
  if (!view.empty()) std::memcpy(buffer, view.data(), view.size());
  mPosition += static_cast<qpdf_offset_t>(view.size());
  return view.size();
}
