// The operations of the XMP toolkit that this system uses, on top of exempi. Smart handlers and packet scanning are the
// library's; they run in a separate process (xmp-worker), because a document may make them loop or crash. Failures of
// the library are thrown as XMP_Error; a missing value gives false. Paths and options are those of the XMP data model
// ("slug[1]", "slug[1]/ns:field").
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/Export.h"

namespace platform {

using XMP_OptionBits = uint32_t;
using XMP_Index = int32_t;

inline constexpr XMP_OptionBits kXMP_PropValueIsStruct = 0x00000100;
inline constexpr XMP_OptionBits kXMP_PropValueIsArray = 0x00000200;
inline constexpr XMP_OptionBits kXMPFiles_OpenForRead = 0x00000001;
inline constexpr XMP_OptionBits kXMPFiles_OpenForUpdate = 0x00000002;
inline constexpr XMP_OptionBits kXMPFiles_OpenUseSmartHandler = 0x00000020;
inline constexpr XMP_OptionBits kXMPFiles_OpenUsePacketScanning = 0x00000040;
inline constexpr XMP_Index kXMP_ArrayLastItem = -1;
inline constexpr uint32_t kXMP_UnknownFile = 0x20202020;
inline constexpr const char* kXMP_NS_PagedText = "http://ns.adobe.com/xap/1.0/t/pg/";
inline constexpr const char* kXMP_NS_FontType = "http://ns.adobe.com/xap/1.0/sType/Font#";

class PLATFORM_API XMP_Error : public std::runtime_error {
 public:
  XMP_Error(int id, const std::string& message);
  ~XMP_Error() override;
  int GetID() const { return id_; }

 private:
  int id_;
};

// The interface version of this adapter.
struct XMP_VersionInfo {
  uint8_t major = 0, minor = 0, micro = 0;
  const char* message = "";
};

class PLATFORM_API TXMPMeta {
 public:
  static void GetVersionInfo(XMP_VersionInfo* info);
  // Calls are counted together with those of TXMPFiles; the last Terminate shuts the library down. Returns false if it
  // cannot start.
  static bool Initialize();
  static void Terminate();
  // Returns in registeredPrefix the prefix that is used, which may differ from the suggested one. Returns false if the
  // library refuses.
  static bool RegisterNamespace(const char* uri, const char* suggestedPrefix, std::string* registeredPrefix);

  TXMPMeta();
  ~TXMPMeta();
  TXMPMeta(TXMPMeta&&) noexcept;
  TXMPMeta& operator=(TXMPMeta&&) noexcept;

  // Indexes start at 1. Text is UTF-8. Out parameters may be null and are unchanged if the result is false.
  XMP_Index CountArrayItems(const char* ns, const char* array) const;
  bool GetProperty(const char* ns, const char* path, std::string* value, XMP_OptionBits* options) const;
  bool GetStructField(const char* ns, const char* structPath, const char* fieldNs, const char* field,
                      std::string* value, XMP_OptionBits* options) const;
  bool GetArrayItem(const char* ns, const char* array, XMP_Index index, std::string* value,
                    XMP_OptionBits* options) const;
  void DeleteProperty(const char* ns, const char* path);
  void SetProperty(const char* ns, const char* path, const char* value);
  void AppendArrayItem(const char* ns, const char* array, XMP_OptionBits arrayOptions, const char* value,
                       XMP_OptionBits itemOptions);
  void SetStructField(const char* ns, const char* structPath, const char* fieldNs, const char* field,
                      const char* value);
  // Returns the serialized packet, for tests and reports.
  std::string Serialize() const;

 private:
  friend class TXMPFiles;
  explicit TXMPMeta(const std::string& packet);
  struct State;
  std::unique_ptr<State> state_;
};

class PLATFORM_API TXMPFiles {
 public:
  static bool Initialize();
  static void Terminate();

  TXMPFiles();
  ~TXMPFiles();  // closes an open file without writing
  // Returns false if the file does not exist, cannot be read (for an update: written), or cannot be opened by the
  // library with these options: a smart handler reads .psd, .psb, .jpg, .tif, .png and PostScript, detected by content;
  // packet scanning reads any file with a packet. `format` is kXMP_UnknownFile. Closes a file that is open, without
  // writing. Throws XMP_Error, and reports it, if the metadata is too large or the library loops, runs out of memory or
  // crashes.
  bool OpenFile(const char* path, uint32_t format, XMP_OptionBits options);
  // Returns false, with *meta unchanged, if the file has no metadata. This and PutXMP throw XMP_Error if no file is
  // open.
  bool GetXMP(TXMPMeta* meta);
  bool CanPutXMP(const TXMPMeta& meta);  // false also if no file is open
  void PutXMP(const TXMPMeta& meta);     // nothing reaches the file before CloseFile
  // Writes what was put, unless the file contains it already, and reads it back to check it. In a layered document
  // (.psd, .psb) only the packet changes; if it fits its old place, it is written there with PatchFile. Otherwise the
  // change is made in a copy, which replaces the file like ReplaceFile, so that a failed write leaves the old file. In
  // other kinds of files the library also updates the file's own forms of the same metadata (Exif, IPTC). Throws
  // XMP_Error if it cannot be written or read back.
  void CloseFile();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

class PLATFORM_API TXMPUtils {
 public:
  // Composes the path of an item. The index starts at 1 or is kXMP_ArrayLastItem.
  static void ComposeArrayItemPath(const char* ns, const char* array, XMP_Index index, std::string* path);
};

}  // namespace platform
