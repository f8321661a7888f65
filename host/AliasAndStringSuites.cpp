// The suites of aliases (which are handles) and of strings.
#include "host/HostObjects.h"
#include "host/Suites.h"
#include "host/TextOut.h"
#include "platform/TextEncoding.h"

using namespace host_sdk;

namespace host {

namespace {

HostObjects& Objects() { return HostObjects::Shared(); }

// Returns the alias if it has this kind, otherwise null.
const AliasData* FindAlias(Handle alias, int32_t kind) {
  const AliasData* data = Objects().handles.Find(alias);
  return data && data->kind == kind ? data : nullptr;
}

SPErr GetKind(Handle alias, int32_t* kind) {
  const AliasData* data = Objects().handles.Find(alias);
  if (!data || !kind) return kBadParameters;
  *kind = data->kind;
  return kNoErr;
}

SPErr GetPath(Handle alias, char* buffer, uint32_t size) {
  const AliasData* data = FindAlias(alias, kAliasKindDirect);
  return data ? CopyText(data->bytes, buffer, size) : kBadParameters;
}

SPErr GetUnicodePath(Handle alias, uint16_t* buffer, uint32_t size, uint32_t* length) {
  const AliasData* data = FindAlias(alias, kAliasKindUnicode);
  if (!data || !length) return kBadParameters;
  const SPErr error = CopyUnits(data->text, buffer, size);
  if (error == kNoErr) *length = static_cast<uint32_t>(data->text.size());
  return error;
}

SPErr MakeFromPath(const char* path, Handle* alias) {
  if (!path || !alias) return kBadParameters;
  AliasData data;
  data.kind = kAliasKindDirect;
  data.bytes = path;
  *alias = Objects().handles.Add(std::move(data));
  return kNoErr;
}

SPErr MakeFromUnicodePath(const uint16_t* text, uint32_t length, Handle* alias) {
  if (!text || !alias) return kBadParameters;
  AliasData data;
  data.text.assign(text, text + length);
  if (!platform::UTF16ToUTF8(data.text)) return kBadParameters;
  *alias = Objects().handles.Add(std::move(data));
  return kNoErr;
}

SPErr Dispose(Handle handle) { return Objects().handles.Remove(handle) ? kNoErr : kBadParameters; }

int32_t GetSize(Handle handle) {
  const AliasData* data = Objects().handles.Find(handle);
  if (!data) return 0;
  const size_t size = data->kind == kAliasKindDirect ? data->bytes.size() : data->text.size() * sizeof(char16_t);
  return static_cast<int32_t>(size);
}

SPErr MakeFromUnicode(const uint16_t* text, uint32_t length, ASZString* string) {
  if (!text || !string) return kBadParameters;
  const auto utf8 = platform::UTF16ToUTF8(std::u16string(text, text + length));
  if (!utf8) return kBadParameters;
  *string = Objects().strings.Add(*utf8);
  return kNoErr;
}

SPErr MakeFromUTF8(const char* text, ASZString* string) {
  if (!text || !string || !platform::IsValidUTF8(text)) return kBadParameters;
  *string = Objects().strings.Add(text);
  return kNoErr;
}

std::u16string UnitsOf(const std::string& utf8) { return platform::UTF8ToUTF16(utf8).value_or(std::u16string()); }

uint32_t LengthAsUnicode(ASZString string) {
  const std::string* text = Objects().strings.Find(string);
  return text ? static_cast<uint32_t>(UnitsOf(*text).size()) : 0;
}

SPErr AsUnicode(ASZString string, uint16_t* buffer, uint32_t size) {
  const std::string* text = Objects().strings.Find(string);
  return text ? CopyUnits(UnitsOf(*text), buffer, size) : kBadParameters;
}

uint32_t LengthAsUTF8(ASZString string) {
  const std::string* text = Objects().strings.Find(string);
  return text ? static_cast<uint32_t>(text->size()) : 0;
}

SPErr AsUTF8(ASZString string, char* buffer, uint32_t size) {
  const std::string* text = Objects().strings.Find(string);
  return text ? CopyText(*text, buffer, size) : kBadParameters;
}

SPErr Release(ASZString string) { return Objects().strings.Remove(string) ? kNoErr : kBadParameters; }

}  // namespace

const PSAliasSuite& AliasSuite() {
  static constexpr PSAliasSuite sSuite = {GetKind, GetPath, GetUnicodePath, MakeFromPath, MakeFromUnicodePath};
  return sSuite;
}

const PSHandleSuite& HandleSuite() {
  static constexpr PSHandleSuite sSuite = {Dispose, GetSize};
  return sSuite;
}

const ASZStringSuite& ZStringSuite() {
  static constexpr ASZStringSuite sSuite = {MakeFromUnicode, LengthAsUnicode, AsUnicode, Release};
  return sSuite;
}

const ASZStringSuite2& ZStringSuite2() {
  static constexpr ASZStringSuite2 sSuite = {MakeFromUTF8, LengthAsUTF8, AsUTF8};
  return sSuite;
}

}  // namespace host
