#include "platform/XMP.h"

#include <mutex>
#include <utility>

#include "platform/XMPLibrary.h"

namespace platform {

namespace {

[[noreturn]] void ThrowLast(const std::string& doing) {
  const int id = xmp_get_error();
  throw XMP_Error(id, doing + " failed with the XMP library's error " + std::to_string(id));
}

std::mutex sMutex;
int sUsers = 0;  // users of the library, guarded by sMutex

bool StartLibrary() {
  const std::lock_guard lock(sMutex);
  if (sUsers == 0 && !xmp_init()) return false;
  ++sUsers;
  return true;
}

void EndLibrary() {
  const std::lock_guard lock(sMutex);
  if (sUsers > 0 && --sUsers == 0) xmp_terminate();
}

// Combines "slug[1]" and a field to "slug[1]/prefix:field".
std::string FieldPath(const char* structPath, const char* fieldNs, const char* field) {
  StringBuffer prefix;
  if (!xmp_namespace_prefix(fieldNs, prefix.Get())) throw XMP_Error(0, std::string("no prefix for ") + fieldNs);
  return std::string(structPath) + "/" + prefix.Text() + field;  // the prefix ends in ":"
}

}  // namespace

XMP_Error::XMP_Error(int id, const std::string& message) : std::runtime_error(message), id_(id) {}
XMP_Error::~XMP_Error() = default;

struct TXMPMeta::State {
  MetaHandle meta;
};

void TXMPMeta::GetVersionInfo(XMP_VersionInfo* info) {
  *info = {5, 4, 0, "XMP metadata over exempi, interface level 5.4"};
}

bool TXMPMeta::Initialize() { return StartLibrary(); }
void TXMPMeta::Terminate() { EndLibrary(); }

bool TXMPMeta::RegisterNamespace(const char* uri, const char* suggestedPrefix, std::string* registeredPrefix) {
  StringBuffer registered;
  if (!xmp_register_namespace(uri, suggestedPrefix, registered.Get())) {
    // False can also mean that another prefix than the suggested one is used.
    if (!xmp_namespace_prefix(uri, registered.Get())) return false;
  }
  if (registeredPrefix) *registeredPrefix = registered.Text();
  return true;
}

TXMPMeta::TXMPMeta() : state_(std::make_unique<State>(State{MetaHandle(xmp_new_empty())})) {}
TXMPMeta::TXMPMeta(const std::string& packet)
    : state_(std::make_unique<State>(State{MetaHandle(xmp_new(packet.data(), packet.size()))})) {
  if (!state_->meta) ThrowLast("Reading metadata");
}
TXMPMeta::~TXMPMeta() = default;
TXMPMeta::TXMPMeta(TXMPMeta&&) noexcept = default;
TXMPMeta& TXMPMeta::operator=(TXMPMeta&&) noexcept = default;

XMP_Index TXMPMeta::CountArrayItems(const char* ns, const char* array) const {
  XMP_Index count = 0;
  StringBuffer value;
  while (xmp_get_array_item(state_->meta.get(), ns, array, count + 1, value.Get(), nullptr)) ++count;
  return count;
}

bool TXMPMeta::GetProperty(const char* ns, const char* path, std::string* value, XMP_OptionBits* options) const {
  StringBuffer text;
  uint32_t bits = 0;
  if (!xmp_get_property(state_->meta.get(), ns, path, text.Get(), &bits)) return false;
  if (value) *value = text.Text();
  if (options) *options = bits;
  return true;
}

bool TXMPMeta::GetStructField(const char* ns, const char* structPath, const char* fieldNs, const char* field,
                              std::string* value, XMP_OptionBits* options) const {
  return GetProperty(ns, FieldPath(structPath, fieldNs, field).c_str(), value, options);
}

bool TXMPMeta::GetArrayItem(const char* ns, const char* array, XMP_Index index, std::string* value,
                            XMP_OptionBits* options) const {
  StringBuffer text;
  uint32_t bits = 0;
  if (!xmp_get_array_item(state_->meta.get(), ns, array, index, text.Get(), &bits)) return false;
  if (value) *value = text.Text();
  if (options) *options = bits;
  return true;
}

void TXMPMeta::DeleteProperty(const char* ns, const char* path) {
  if (xmp_has_property(state_->meta.get(), ns, path) && !xmp_delete_property(state_->meta.get(), ns, path)) {
    ThrowLast(std::string("Deleting ") + path);
  }
}

void TXMPMeta::SetProperty(const char* ns, const char* path, const char* value) {
  if (!xmp_set_property(state_->meta.get(), ns, path, value, 0)) ThrowLast(std::string("Setting ") + path);
}

void TXMPMeta::AppendArrayItem(const char* ns, const char* array, XMP_OptionBits arrayOptions, const char* value,
                               XMP_OptionBits itemOptions) {
  if (!xmp_append_array_item(state_->meta.get(), ns, array, arrayOptions, value, itemOptions)) {
    ThrowLast(std::string("Appending to ") + array);
  }
}

void TXMPMeta::SetStructField(const char* ns, const char* structPath, const char* fieldNs, const char* field,
                              const char* value) {
  SetProperty(ns, FieldPath(structPath, fieldNs, field).c_str(), value);
}

std::string TXMPMeta::Serialize() const {
  std::string text;
  if (!SerializeMeta(state_->meta.get(), text)) ThrowLast("Serializing metadata");
  return text;
}

void TXMPUtils::ComposeArrayItemPath(const char*, const char* array, XMP_Index index, std::string* path) {
  *path = std::string(array) + (index == kXMP_ArrayLastItem ? "[last()]" : "[" + std::to_string(index) + "]");
}

}  // namespace platform
