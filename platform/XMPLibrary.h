// Helpers for the XMP library: owned handles, and metadata as a list. Included only by sources that call the library.
#pragma once

#include <exempi/xmp.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace platform {

class StringBuffer {
 public:
  StringBuffer() : string_(xmp_string_new()) {}
  ~StringBuffer() { xmp_string_free(string_); }
  StringBuffer(const StringBuffer&) = delete;
  StringBuffer& operator=(const StringBuffer&) = delete;
  XmpStringPtr Get() const { return string_; }
  std::string Text() const { return std::string(xmp_string_cstr(string_), xmp_string_len(string_)); }

 private:
  XmpStringPtr string_;
};

struct FreeMeta {
  void operator()(XmpPtr meta) const { xmp_free(meta); }
};
using MetaHandle = std::unique_ptr<_Xmp, FreeMeta>;

// Writes compact RDF without a packet wrapper. Returns false if the library fails.
bool SerializeMeta(XmpPtr meta, std::string& text);

// The text of every property, item and field by namespace and path. Empty ones are left out, because the library drops
// them when it reads a file.
using PropertyMap = std::map<std::pair<std::string, std::string>, std::string>;
PropertyMap ListProperties(XmpPtr meta);

}  // namespace platform
