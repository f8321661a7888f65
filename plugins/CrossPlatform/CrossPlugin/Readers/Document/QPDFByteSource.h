// The bytes of a document as libqpdf reads them.
#pragma once

#include <qpdf/InputSource.hh>
#include <string>

#include "platform/ByteSource.h"

class QPDFByteSource : public InputSource {
 public:
  explicit QPDFByteSource(platform::ByteSource& bytes) : mBytes(bytes) {}  // not owned

  qpdf_offset_t findAndSkipNextEOL() override;
  const std::string& getName() const override { return mName; }
  qpdf_offset_t tell() override { return mPosition; }
  // Throws for a position before the beginning. After the end there is nothing to read.
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { mPosition = 0; }
  // Throws if the file cannot be read.
  size_t read(char* buffer, size_t length) override;
  void unreadCh(char) override { --mPosition; }

 private:
  std::string_view View(size_t least);

  platform::ByteSource& mBytes;
  const std::string mName;
  qpdf_offset_t mPosition = 0;
};
