// Queries about documents.
#include "photoshop/PhotoshopFontUtils.h"

#include "Documents/AllTrackedDocuments.h"
#include "Identification/FontMerging.h"
#include "Services/DiagnosticLog.h"
#include "Services/VelorantFileUtils.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "platform/Clock.h"

using namespace host_sdk;

namespace {

constexpr FourCharCode kClassDocument = Code("Dcmn");
constexpr FourCharCode kClassApplication = Code("capp");
constexpr FourCharCode kKeyFileReference = Code("FilR");
constexpr FourCharCode kKeyDocumentID = Code("DocI");
constexpr size_t kLongestPath = 1024;
constexpr long kSecondsOfOpening = 4;

SPErr CountDocuments(int32_t& count) {
  HostValue value;
  value.integer = &count;
  return PIUGetInfo(kClassApplication, Code("NmbD"), value);
}

SPErr PathOfDocument(uint32_t index, std::string& path) {
  ScopedHandle alias;
  HostValue value;
  value.alias = &alias;
  const SPErr error = PIUGetInfoByIndex(index, kClassDocument, kKeyFileReference, value);
  if (error == kNoErr) path = alias ? PhotoshopFontUtils::GetUTF8EncodedPathFromFileAlias(alias.Get()) : std::string();
  return error;
}

}  // namespace

void PhotoshopFontUtils::ThrowSPErr(long error) {
  if (error != 0) throw error;
}

void PhotoshopFontUtils::AcquireSuite(const char* name, int32_t version, const void** suite) {
  ThrowSPErr(sSPBasic->AcquireSuite(name, version, suite));
}

void PhotoshopFontUtils::ReleaseSuite(const char* name, int32_t version, const void** suite) {
  if (!*suite) return;
  sSPBasic->ReleaseSuite(name, version);
  *suite = nullptr;
}

SPErr PhotoshopFontUtils::GetCurrentDocumentPathUnstableInCS6(std::string* path) {
  ScopedHandle alias;
  HostValue value;
  value.alias = &alias;
  const SPErr error = PIUGetInfo(kClassDocument, kKeyFileReference, value);
  if (error == kNoErr) *path = alias ? GetUTF8EncodedPathFromFileAlias(alias.Get()) : std::string();
  return error;
}

SPErr PhotoshopFontUtils::GetCurrentDocumentPathTracked(std::string* path) {
  return GetCurrentDocumentPathUnstableInCS6(path);
}

SPErr PhotoshopFontUtils::GetCurrentDocumentID(int* id) {
  HostValue value;
  value.integer = id;
  return PIUGetInfo(kClassDocument, kKeyDocumentID, value);
}

int PhotoshopFontUtils::IndexOfDocumentWithPath(const std::string& path) {
  std::string wanted = path;
  if (wanted.empty()) GetCurrentDocumentPathUnstableInCS6(&wanted);
  int32_t count = 0;
  if (wanted.empty() || CountDocuments(count) != kNoErr) return -1;
  // Backwards, so that the last one wins if a file is open twice.
  for (int index = count; index >= 1; --index) {
    std::string candidate;
    if (PathOfDocument(static_cast<uint32_t>(index), candidate) != kNoErr) return -1;
    if (candidate == wanted) return index;
  }
  return -1;
}

SPErr PhotoshopFontUtils::GetDocumentID(int* id, const std::string& path) {
  const int index = IndexOfDocumentWithPath(path);
  if (index < 0) return -1;
  HostValue value;
  value.integer = id;
  return PIUGetInfoByIndex(static_cast<uint32_t>(index), kClassDocument, kKeyDocumentID, value) == kNoErr ? kNoErr : -1;
}

SPErr PhotoshopFontUtils::GetDocumentDirtyFlag(const int* id, bool* isDirty) {
  TracedCall traced(__func__);
  int32_t dirty = 0;
  HostValue value;
  value.integer = &dirty;
  const SPErr error = PIUGetInfo(kClassDocument, Code("IsDr"), value);
  if (error == kNoErr) *isDirty = dirty != 0;
  traced.End("%s(0x%08x, isDirty=%d) returning %d", __func__, static_cast<unsigned>(id ? *id : 0), dirty, error);
  return error;
}

SPErr PhotoshopFontUtils::DocumentExists(int id, bool* exists) {
  *exists = false;
  int32_t count = 0;
  SPErr error = CountDocuments(count);
  for (int index = 1; error == kNoErr && index <= count; ++index) {
    int each = 0;
    HostValue value;
    value.integer = &each;
    error = PIUGetInfoByIndex(static_cast<uint32_t>(index), kClassDocument, kKeyDocumentID, value);
    if (error == kNoErr && each == id) *exists = true;
  }
  return error;
}

SPErr PhotoshopFontUtils::GetUTF8PathsForAllOpenDocuments(std::vector<std::string>& paths) {
  int32_t count = 0;
  SPErr error = CountDocuments(count);
  for (int index = 1; error == kNoErr && index <= count; ++index) {
    std::string path;
    error = PathOfDocument(static_cast<uint32_t>(index), path);
    if (error == kNoErr) paths.push_back(path);
  }
  return error;
}

std::string PhotoshopFontUtils::GetUTF8EncodedPathFromFileAlias(Handle alias) {
  char buffer[kLongestPath];
  AliasToFullPath(alias, buffer, sizeof buffer);
  if (buffer[0] == '\0') return "";
  if (VelorantFileUtils::GetFileModificationDate(buffer) == 0) {
    // The log line promises a search, but there is none: a document that is not on disk has no path.
    OutputIndentedAndFormattedString(0, "AliasToFullPath() returned '%s', which does not exist. Looking elsewhere.",
                                     buffer);
    return "";
  }
  return CreateUTF8StringFromUncertainEncoding(buffer);
}

std::string PhotoshopFontUtils::FileNameOnly(const std::string& path) {
  const size_t separator = path.find_last_of(":/\\");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

SPErr PhotoshopFontUtils::BringDocumentToFront(int id) { return PIUSelectByID(kClassDocument, id); }

bool PhotoshopFontUtils::IsTrackedDocumentBeingOpened(OneTrackedDocument& document) {
  const std::string path = document.GetDocumentFilePath();
  if (path.empty()) return false;
  const auto handle = static_cast<unsigned>(document.GetDocumentHandle());
  if (handle == 0) {
    OutputIndentedAndFormattedString(
        0,
        "WARNING: tracked document 0x%08x (%s) does not have an ID. Not safe to infer that "
        "it is being opened from disk.",
        handle, path.c_str());
    return false;
  }
  if (document.GetTimeOpenEventWasHandled() != 0) {
    // Whole seconds: exactly 4 still counts, although the log line says five.
    if (platform::Clock::WholeSeconds() - document.GetTimeOpenEventWasHandled() > kSecondsOfOpening) return false;
    OutputIndentedAndFormattedString(0, "Document 0x%08x (%s) got an openEvent within the last five seconds.", handle,
                                     path.c_str());
    return true;
  }
  if (document.GetTimeSaveEventWasHandled() != 0) {
    OutputIndentedAndFormattedString(0, "Document 0x%08x (%s) must be a save of a newly created document.", handle,
                                     path.c_str());
    return false;
  }
  OutputIndentedAndFormattedString(
      0, "Document 0x%08x (%s) is being opened, but we haven't yet gotten an openEvent for it.", handle, path.c_str());
  document.SetTimeOpenEventWasHandled();
  return true;
}

bool PhotoshopFontUtils::isCurrentDocumentBeingOpened(OneTrackedDocument* document) {
  int id = 0;
  GetCurrentDocumentID(&id);
  if (!document) document = AllTrackedDocuments::FindTrackedDocumentByHandle(id);
  if (document) return IsTrackedDocumentBeingOpened(*document);
  std::vector<std::string> paths;
  GetUTF8PathsForAllOpenDocuments(paths);
  bool isBeingOpened = false;
  for (const std::string& path : paths) {
    if (path.empty() || AllTrackedDocuments::FindTrackedDocumentByPath(path)) continue;
    OutputIndentedAndFormattedString(0,
                                     "Document 0x%08x (%s) is in Photoshop's document list, but we aren't yet tracking "
                                     "it, so it must be in the process of opening.",
                                     static_cast<unsigned>(id), path.c_str());
    isBeingOpened = true;
  }
  if (!isBeingOpened) OutputIndentedAndFormattedString(0, "No document on disk appears to be open.");
  return isBeingOpened;
}

void PSGetDocumentFonts(platform::Array& out, const std::string& path, bool bOpeningNewDocument) {
  std::vector<std::string> names;
  PhotoshopFontUtils::GetDocumentFonts(path, names, bOpeningNewDocument);
  out = platform::Array::Create();
  GlyphsureSupport::FontNameIndex index(out);
  for (const std::string& name : names) {
    GlyphsureSupport::AddFontToArray(platform::String::FromUTF8(name), out, false, &index);
  }
  OutputIndentedAndFormattedString(0, "%d font name(s) found.", static_cast<int>(names.size()));
}

SPErr PSDocumentSuite::GetDocument(int& id, const std::string& path) {
  return PhotoshopFontUtils::GetDocumentID(&id, path);
}
SPErr PSDocumentSuite::GetCurrentDocument(int& id) { return PhotoshopFontUtils::GetCurrentDocumentID(&id); }
SPErr PSDocumentSuite::DocumentExists(int id, bool& exists) { return PhotoshopFontUtils::DocumentExists(id, &exists); }
