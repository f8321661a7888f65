// The recursive walk of a descriptor.
#include <algorithm>
#include <memory>

#include "Services/DiagnosticLog.h"
#include "photoshop/PSConstA.h"
#include "photoshop/PSFU_FreeZone.h"
#include "photoshop/PhotoshopFontUtils.h"

using namespace host_sdk;

PSFU_FreeZone* PhotoshopFontUtils::sFreeZone = nullptr;

namespace {

// Reads a text into an array that the zone owns. Returns null, with the error, on failure.
template <class GetLength, class GetText>
const char* ReadText(PSFU_FreeZone& zone, SPErr& error, const GetLength& getLength, const GetText& getText) {
  uint32_t length = 0;
  error = getLength(&length);
  if (error != kNoErr) return nullptr;
  char* text = zone.Add(std::make_unique<char[]>(length + 1));
  error = getText(text, length + 1);
  return error == kNoErr ? text : nullptr;
}

void NoteText(FourCharCode key, const std::string& text, DescriptorTexts& found) {
  FourCharCode fontPostScriptName = 0;
  sPSActionControl->StringIDToTypeID("fontPostScriptName", &fontPostScriptName);
  if (key == fontPostScriptName) {
    if (std::find(found.fontNames.begin(), found.fontNames.end(), text) != found.fontNames.end()) return;
    found.fontNames.push_back(text);
    ++found.fontCount;
    OutputIndentedAndFormattedString(0, "Added font name '%s'", text.c_str());
  } else if (key == Code("FilR")) {
    found.fileReferences.push_back(text);
    OutputIndentedAndFormattedString(0, "Added file reference '%s'", text.c_str());
  }
}

SPErr NoteTextOfDescriptor(PIActionDescriptor descriptor, FourCharCode key, PSFU_FreeZone& zone,
                           DescriptorTexts& found) {
  ScopedZString string;
  SPErr error = sPSActionDescriptor->GetZString(descriptor, key, string.Out());
  if (error != kNoErr) return error;
  const char* text = ReadText(
      zone, error, [&](uint32_t* length) { return *length = sASZString2->LengthAsUTF8(string.Get()), kNoErr; },
      [&](char* buffer, uint32_t size) { return sASZString2->AsUTF8(string.Get(), buffer, size); });
  if (text) NoteText(key, text, found);
  return error;
}

SPErr NoteTextOfList(PIActionList list, uint32_t index, FourCharCode key, PSFU_FreeZone& zone, DescriptorTexts& found) {
  SPErr error = kNoErr;
  const char* text = ReadText(
      zone, error, [&](uint32_t* length) { return sPSActionList->GetStringLength(list, index, length); },
      [&](char* buffer, uint32_t size) { return sPSActionList->GetString(list, index, buffer, size); });
  if (text) NoteText(key, text, found);
  return error;
}

bool IsObject(FourCharCode type) { return type == kTypeObject || type == kTypeGlobalObject; }

// Sets the zone of one walk and resets it at the end, also when a missing suite throws.
class CurrentZone {
 public:
  explicit CurrentZone(PSFU_FreeZone*& place) : mPlace(place) { mPlace = &mZone; }
  ~CurrentZone() { mPlace = nullptr; }
  CurrentZone(const CurrentZone&) = delete;
  CurrentZone& operator=(const CurrentZone&) = delete;

 private:
  PSFU_FreeZone mZone;
  PSFU_FreeZone*& mPlace;
};

}  // namespace

SPErr PhotoshopFontUtils::ProcessDescriptor(PIActionDescriptor descriptor, DescriptorTexts& found) {
  const CurrentZone zone(sFreeZone);
  return ProcessInfoFromDescriptor(descriptor, found);
}

SPErr PhotoshopFontUtils::ProcessInfoFromDescriptor(PIActionDescriptor descriptor, DescriptorTexts& found) {
  uint32_t count = 0;
  SPErr error = sPSActionDescriptor->GetCount(descriptor, &count);
  for (uint32_t i = 0; error == kNoErr && i < count; ++i) {
    FourCharCode key = 0, type = 0, objectClass = 0;
    error = sPSActionDescriptor->GetKey(descriptor, i, &key);
    if (error == kNoErr) error = sPSActionDescriptor->GetType(descriptor, key, &type);
    if (error != kNoErr) break;
    OutputIndentedAndFormattedString(0, "%s: %s", KeyName(key).c_str(), FourCharTypeToStdString(type).c_str());
    if (type == kTypeText) {
      error = NoteTextOfDescriptor(descriptor, key, *sFreeZone, found);
    } else if (IsObject(type)) {
      ScopedDescriptor object;
      error = sPSActionDescriptor->GetObject(descriptor, key, &objectClass, object.Out());
      if (error == kNoErr) error = ProcessInfoFromDescriptor(sFreeZone->Add(std::move(object)), found);
    } else if (type == kTypeList) {
      ScopedList list;
      error = sPSActionDescriptor->GetList(descriptor, key, list.Out());
      if (error == kNoErr) error = ProcessInfoFromList(sFreeZone->Add(std::move(list)), key, found);
    }
  }
  return error;
}

// Traces the items of a list under the list's own key.
SPErr PhotoshopFontUtils::ProcessInfoFromList(PIActionList list, FourCharCode key, DescriptorTexts& found) {
  uint32_t count = 0;
  SPErr error = sPSActionList->GetCount(list, &count);
  for (uint32_t i = 0; error == kNoErr && i < count; ++i) {
    FourCharCode type = 0, objectClass = 0;
    error = sPSActionList->GetType(list, i, &type);
    if (error != kNoErr) break;
    if (type == kTypeText) {
      error = NoteTextOfList(list, i, key, *sFreeZone, found);
    } else if (IsObject(type)) {
      ScopedDescriptor object;
      error = sPSActionList->GetObject(list, i, &objectClass, object.Out());
      if (error == kNoErr) error = ProcessInfoFromDescriptor(sFreeZone->Add(std::move(object)), found);
    } else if (type == kTypeList) {
      ScopedList inner;
      error = sPSActionList->GetList(list, i, inner.Out());
      if (error == kNoErr) error = ProcessInfoFromList(sFreeZone->Add(std::move(inner)), key, found);
    }
  }
  return error;
}
