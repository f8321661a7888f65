#include "platform/XMP.h"

#include <unistd.h>

#include <mutex>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "platform/Trace.h"
#include "platform/XMPComparison.h"
#include "platform/XMPDepth.h"
#include "platform/XMPLibrary.h"

namespace platform {

namespace {

[[noreturn]] void ThrowLast(const std::string& doing) {
  const int id = xmp_get_error();
  throw XMP_Error(id, doing + " failed with the XMP library's error " + std::to_string(id));
}

std::mutex sMutex;
int sUsers = 0;  // of the library, guarded by sMutex

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

// "slug[1]" and a field become "slug[1]/prefix:field".
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
    // False also means that another prefix than the suggested one is in use.
    if (!xmp_namespace_prefix(uri, registered.Get())) return false;
  }
  if (registeredPrefix) *registeredPrefix = registered.Text();
  return true;
}

TXMPMeta::TXMPMeta() : state_(std::make_unique<State>(State{MetaHandle(xmp_new_empty())})) {}
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

struct TXMPFiles::State {
  ~State() {
    if (file) {
      xmp_files_close(file, XMP_CLOSE_NOOPTION);
      xmp_files_free(file);
    }
  }
  void Release() {
    xmp_files_free(file);
    file = nullptr;
  }

  XmpFilePtr file = nullptr;
  std::string path;
  StagedFile copy;  // for an update: what the library works on, until it takes the file's place
  uint32_t options = 0;
  bool put = false;
  PropertyMap original, wanted;  // what the file held before, and what was put last
};

namespace {

XmpOpenFileOptions LibraryOptions(XMP_OptionBits options) {
  uint32_t bits = 0;
  if (options & kXMPFiles_OpenForRead) bits |= XMP_OPEN_READ;
  if (options & kXMPFiles_OpenForUpdate) bits |= XMP_OPEN_FORUPDATE;
  if (options & kXMPFiles_OpenUseSmartHandler) bits |= XMP_OPEN_USESMARTHANDLER;
  if (options & kXMPFiles_OpenUsePacketScanning) bits |= XMP_OPEN_USEPACKETSCANNING;
  return static_cast<XmpOpenFileOptions>(bits);
}

// A handle on an opened file; null if the library cannot open it.
XmpFilePtr OpenWith(const std::string& path, XMP_OptionBits options) {
  const XmpFilePtr file = xmp_files_new();
  if (!file) return nullptr;
  if (xmp_files_open(file, path.c_str(), LibraryOptions(options))) return file;
  xmp_files_free(file);
  return nullptr;
}

// What the file holds now, read back through a handle of its own.
PropertyMap ReadBack(const std::string& path, XMP_OptionBits options) {
  const XMP_OptionBits reading = (options & ~kXMPFiles_OpenForUpdate) | kXMPFiles_OpenForRead;
  const XmpFilePtr file = OpenWith(path, reading);
  if (!file) return {};
  const MetaHandle meta(xmp_files_get_new_xmp(file));
  PropertyMap list = meta ? ListProperties(meta.get()) : PropertyMap();
  xmp_files_close(file, XMP_CLOSE_NOOPTION);
  xmp_files_free(file);
  return list;
}

}  // namespace

bool TXMPFiles::Initialize() { return StartLibrary(); }
void TXMPFiles::Terminate() { EndLibrary(); }

TXMPFiles::TXMPFiles() : state_(std::make_unique<State>()) {}
TXMPFiles::~TXMPFiles() = default;

bool TXMPFiles::OpenFile(const char* path, uint32_t format, XMP_OptionBits options) {
  if (format != kXMP_UnknownFile) throw XMP_Error(0, "only the unknown format is served");
  state_ = std::make_unique<State>();
  state_->path = path;
  state_->options = options;
  if (CheckReadable(path)) return false;  // the library takes a folder, and nothing at all, for a file
  if (IsMetadataTooDeep(path, options & kXMPFiles_OpenUsePacketScanning)) {
    ReportProblem(std::string(path) + ": its metadata is nested too deep to be read");
    return false;
  }
  std::string target = path;
  if (options & kXMPFiles_OpenForUpdate) {
    if (access(path, W_OK) != 0 || state_->copy.StageCopy(path, path)) return false;
    target = state_->copy.TemporaryPath();
  }
  state_->file = OpenWith(target, options);
  return state_->file != nullptr;
}

bool TXMPFiles::GetXMP(TXMPMeta* meta) {
  if (!state_->file) throw XMP_Error(0, "no file is open");
  const XmpPtr read = xmp_files_get_new_xmp(state_->file);
  if (!read) return false;
  meta->state_ = std::make_unique<TXMPMeta::State>(TXMPMeta::State{MetaHandle(read)});
  return true;
}

bool TXMPFiles::CanPutXMP(const TXMPMeta& meta) {
  return state_->file && xmp_files_can_put_xmp(state_->file, meta.state_->meta.get());
}

void TXMPFiles::PutXMP(const TXMPMeta& meta) {
  if (!state_->file) throw XMP_Error(0, "no file is open");
  if (!xmp_files_put_xmp(state_->file, meta.state_->meta.get())) ThrowLast("Putting metadata");
  if (!state_->put) state_->original = ReadBack(state_->path, state_->options);
  state_->put = true;
  state_->wanted = ListProperties(meta.state_->meta.get());
}

void TXMPFiles::CloseFile() {
  if (!state_->file) return;
  const bool closed = xmp_files_close(state_->file, XMP_CLOSE_NOOPTION);
  state_->Release();
  const std::unique_ptr<State> done = std::exchange(state_, std::make_unique<State>());
  if (!done->put) return;
  if (!closed) ThrowLast("Writing " + done->path);
  // On some files the library reports a success that is lost.
  const PropertyMap found = ReadBack(done->copy.TemporaryPath(), done->options);
  const std::string lost = FindLostProperty(done->original, done->wanted, found);
  if (!lost.empty()) throw XMP_Error(0, done->path + ": the metadata that was written cannot be read back: " + lost);
  if (const std::error_code error = done->copy.Commit()) throw XMP_Error(0, done->path + ": " + DescribeError(error));
}

void TXMPUtils::ComposeArrayItemPath(const char*, const char* array, XMP_Index index, std::string* path) {
  *path = std::string(array) + (index == kXMP_ArrayLastItem ? "[last()]" : "[" + std::to_string(index) + "]");
}

}  // namespace platform
