#include "platform/XMPLibrary.h"

namespace platform {

bool SerializeMeta(XmpPtr meta, std::string& text) {
  StringBuffer buffer;
  if (!xmp_serialize(meta, buffer.Get(), XMP_SERIAL_OMITPACKETWRAPPER | XMP_SERIAL_USECOMPACTFORMAT, 0)) return false;
  text = buffer.Text();
  return true;
}

PropertyMap ListProperties(XmpPtr meta) {
  PropertyMap list;
  const XmpIteratorPtr iterator = xmp_iterator_new(meta, nullptr, nullptr, XMP_ITER_PROPERTIES);
  if (!iterator) return list;
  StringBuffer schema, path, value;
  uint32_t options = 0;
  while (xmp_iterator_next(iterator, schema.Get(), path.Get(), value.Get(), &options)) {
    const uint32_t form = options & XMP_PROP_COMPOSITE_MASK;
    if (path.Text().empty()) continue;  // the namespace itself
    list[{schema.Text(), path.Text()}] = {form ? std::string() : value.Text(), form};
  }
  xmp_iterator_free(iterator);
  return list;
}

}  // namespace platform
