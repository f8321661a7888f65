#include "host/console/Slug.h"

#include "platform/Files.h"
#include "platform/XMP.h"

namespace console {

namespace {

constexpr const char* kNamespace = "http://www.velorant.com/meta/Glyphsure/";
constexpr const char* kPrefix = "VelorantGlyphsure";
constexpr const char* kArray = "slug";
constexpr const char* kNameField = "PostScriptName";

bool OpenFile(platform::TXMPFiles& file, const std::string& path) {
  for (const platform::XMP_OptionBits way :
       {platform::kXMPFiles_OpenUseSmartHandler, platform::kXMPFiles_OpenUsePacketScanning}) {
    if (file.OpenFile(path.c_str(), platform::kXMP_UnknownFile, platform::kXMPFiles_OpenForRead | way)) return true;
  }
  return false;
}

std::vector<std::string> NamesIn(const platform::TXMPMeta& meta) {
  std::vector<std::string> names;
  const platform::XMP_Index count = meta.CountArrayItems(kNamespace, kArray);
  for (platform::XMP_Index i = 1; i <= count; ++i) {
    std::string item, name;
    platform::TXMPUtils::ComposeArrayItemPath(kNamespace, kArray, i, &item);
    if (meta.GetStructField(kNamespace, item.c_str(), kNamespace, kNameField, &name, nullptr)) names.push_back(name);
  }
  return names;
}

}  // namespace

bool ReadSlugNames(const std::string& path, std::vector<std::string>* names, std::string* problem) {
  names->clear();
  if (const std::error_code error = platform::CheckReadable(path)) {
    *problem = platform::DescribeError(error);
    return false;
  }
  std::string prefix;
  platform::TXMPMeta::RegisterNamespace(kNamespace, kPrefix, &prefix);
  try {
    platform::TXMPFiles file;
    platform::TXMPMeta meta;
    // A file type without XMP has no identification data either.
    if (OpenFile(file, path) && file.GetXMP(&meta)) *names = NamesIn(meta);
  } catch (const platform::XMP_Error& error) {
    *problem = error.what();
    return false;
  }
  return true;
}

}  // namespace console
