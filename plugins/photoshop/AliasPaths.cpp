// Converts paths to and from the host's aliases and the platform's bookmarks.
#include <algorithm>
#include <cstring>
#include <vector>

#include "photoshop/PhotoshopFontUtils.h"
#include "platform/Bookmark.h"

using namespace host_sdk;

SPErr PhotoshopFontUtils::AliasToFullPath(Handle alias, char* destination, size_t maximum) {
  destination[0] = '\0';
  int32_t kind = 0;
  const SPErr error = sPSAlias->GetKind(alias, &kind);
  if (error != kNoErr) return error;
  if (kind == kAliasKindDirect) return sPSAlias->GetPath(alias, destination, static_cast<uint32_t>(maximum));
  std::vector<uint16_t> text(static_cast<size_t>(sPSHandle->GetSize(alias)) * 2 + 1);
  uint32_t length = 0;
  const SPErr read = sPSAlias->GetUnicodePath(alias, text.data(), static_cast<uint32_t>(text.size()), &length);
  if (read != kNoErr) return read;
  ScopedZString string;
  const SPErr made =
      sASZString->MakeFromUnicode(text.data(), std::min(length, static_cast<uint32_t>(text.size())), string.Out());
  if (made != kNoErr) return made;
  std::vector<char> utf8(sASZString2->LengthAsUTF8(string.Get()) + 1);
  const SPErr copied = sASZString2->AsUTF8(string.Get(), utf8.data(), static_cast<uint32_t>(utf8.size()));
  if (copied == kNoErr) {
    std::strncpy(destination, utf8.data(), maximum - 1);
    destination[maximum - 1] = '\0';
  }
  return copied;
}

SPErr PhotoshopFontUtils::FullPathToAlias(const std::string& path, Handle* alias) {
  if (path.starts_with("/cloud-content")) return sPSAlias->MakeFromPath(path.c_str(), alias);
  ScopedZString string;
  const SPErr made = sASZString2->MakeFromUTF8(path.c_str(), string.Out());
  if (made != kNoErr) return made;
  std::vector<uint16_t> text(sASZString->LengthAsUnicode(string.Get()) + 1);
  const SPErr copied = sASZString->AsUnicode(string.Get(), text.data(), static_cast<uint32_t>(text.size()));
  if (copied != kNoErr) return copied;
  return sPSAlias->MakeFromUnicodePath(text.data(), sASZString->LengthAsUnicode(string.Get()), alias);
}

// For paths that are stored for later. Nothing stores one at present.
SPErr PhotoshopFontUtils::BookmarkToFullPath(const platform::Data& bookmark, char* destination, size_t maximum) {
  destination[0] = '\0';
  const std::string path = platform::ResolveBookmark(bookmark);
  if (path.empty()) return kNoSuchObject;
  if (path.size() >= maximum) return kBadParameters;
  std::memcpy(destination, path.c_str(), path.size() + 1);
  return kNoErr;
}

SPErr PhotoshopFontUtils::FullPathToBookmark(const std::string& path, platform::Data* bookmark) {
  const platform::Data made = platform::CreateBookmark(path);
  if (!made) return kNoSuchObject;
  *bookmark = made;
  return kNoErr;
}
