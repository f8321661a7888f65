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
  const XmpIteratorPtr iterator = xmp_iterator_new(meta, nullptr, nullptr, XMP_ITER_JUSTLEAFNODES);
  if (!iterator) return list;
  StringBuffer schema, path, value;
  while (xmp_iterator_next(iterator, schema.Get(), path.Get(), value.Get(), nullptr)) {
    if (!value.Text().empty() && !path.Text().empty()) list[{schema.Text(), path.Text()}] = value.Text();
  }
  xmp_iterator_free(iterator);
  return list;
}

}  // namespace platform
