// Smart lists, the list of web fonts, and the panel: its clicks and the fonts that it activates.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Values.h"

using namespace plugin_interface;
using platform::Array;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;
using PluginInterface::FacadeHandle;
using PluginInterface::ValueRef;

namespace {

Array ArrayOfNumbers(const Numbers& numbers) {
  Array array = Array::Create();
  for (const uint32_t number : numbers) array.Append(Number::FromInteger(number));
  return array;
}

Dictionary DictionaryOf(const calls::SmartListDefinition& list) {
  Dictionary dictionary = Dictionary::Create();
  dictionary.Set("smartListID", Number::FromInteger(list.smartListID));
  dictionary.Set("smartListName", list.name);
  dictionary.Set("workgroupIDs", ArrayOfNumbers(list.workgroupIDs));
  dictionary.Set("setIDs", ArrayOfNumbers(list.setIDs));
  dictionary.Set("smartSetIDs", ArrayOfNumbers(list.smartSetIDs));
  return dictionary;
}

Dictionary DictionaryOf(const calls::ListedFont& font) {
  Dictionary dictionary = Dictionary::Create();
  dictionary.Set("fontID", Number::FromInteger(font.fontID));
  dictionary.Set("displayName", font.displayName);
  dictionary.Set("postscriptName", font.postscriptName);
  dictionary.Set("activated", Number::FromInteger(font.activated ? 1 : 0));
  dictionary.Set("fontLocation", Number::FromInteger(font.fontLocation));
  dictionary.Set("fontIsLocal", Number::FromInteger(font.fontIsLocal ? 1 : 0));
  return dictionary;
}

}  // namespace

TModuleErrorCode GetAllSmartLists(FacadeHandle h, ValueRef filledArray) {
  if (!filledArray) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetAllSmartLists>(h);
    Array array(Value::Retain(filledArray));
    for (const auto& list : reply.result.smartLists) array.Append(DictionaryOf(list));
    return reply.code;
  });
}

TModuleErrorCode GetSmartList(FacadeHandle h, uint32_t smartListID, ValueRef* outDictionary) {
  if (!outDictionary) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetSmartList>(h, {smartListID});
    if (reply.code == kSuccess) *outDictionary = DictionaryOf(reply.result).Release();
    return reply.code;
  });
}

TModuleErrorCode GetPanelSmartListTree(FacadeHandle h, uint32_t smartListID, ValueRef* outText) {
  if (!outText) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetPanelSmartListTree>(h, {smartListID});
    if (reply.code == kSuccess) *outText = String::FromUTF8(reply.result.text).Release();
    return reply.code;
  });
}

// The panel passes a null array of sets with a count above 0 if it names no workgroup; a null array is an empty one.
TModuleErrorCode QueryForSmartListFonts(FacadeHandle h, uint32_t workgroupCount, const uint32_t* workgroupIDs,
                                        uint32_t setCount, const uint32_t* setIDs, uint32_t smartSetCount,
                                        const uint32_t* smartSetIDs, ValueRef filledArray) {
  if (!filledArray) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::QueryForSmartListFonts>(
        h,
        {NumbersOf(workgroupCount, workgroupIDs), NumbersOf(setCount, setIDs), NumbersOf(smartSetCount, smartSetIDs)});
    Array array(Value::Retain(filledArray));
    for (const uint32_t id : reply.result.fontIDs) array.Append(Number::FromInteger(id));
    return reply.code;
  });
}

TModuleErrorCode GetSmartListFonts(FacadeHandle h, uint32_t smartListID, ValueRef filledArray) {
  if (!filledArray) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetSmartListFonts>(h, {smartListID});
    Array array(Value::Retain(filledArray));
    for (const auto& font : reply.result.fonts) array.Append(DictionaryOf(font));
    return reply.code;
  });
}

TModuleErrorCode GetGoogleFonts(FacadeHandle h, ValueRef filledArray) {
  if (!filledArray) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetGoogleFonts>(h);
    Array array(Value::Retain(filledArray));
    for (const auto& font : reply.result.fonts) array.Append(DictionaryOf(font));
    return reply.code;
  });
}

TModuleErrorCode CreateSmartList(FacadeHandle h, const char* name, uint32_t workgroupCount,
                                 const uint32_t* workgroupIDs, uint32_t setCount, const uint32_t* setIDs,
                                 uint32_t smartSetCount, const uint32_t* smartSetIDs, uint32_t* outID) {
  if (!name || !outID) return kNullPointer;
  return Guarded([&] {
    const auto reply =
        CallAgent<calls::CreateSmartList>(h, {name, NumbersOf(workgroupCount, workgroupIDs),
                                              NumbersOf(setCount, setIDs), NumbersOf(smartSetCount, smartSetIDs)});
    if (reply.code == kSuccess) *outID = reply.result.smartListID;
    return reply.code;
  });
}

TModuleErrorCode RenameSmartList(FacadeHandle h, uint32_t smartListID, const char* name) {
  if (!name) return kNullPointer;
  return Guarded([&] { return CallAgent<calls::RenameSmartList>(h, {smartListID, name}).code; });
}

TModuleErrorCode SetSmartListQuery(FacadeHandle h, uint32_t smartListID, uint32_t workgroupCount,
                                   const uint32_t* workgroupIDs, uint32_t setCount, const uint32_t* setIDs,
                                   uint32_t smartSetCount, const uint32_t* smartSetIDs) {
  return Guarded([&] {
    return CallAgent<calls::SetSmartListQuery>(h, {smartListID, NumbersOf(workgroupCount, workgroupIDs),
                                                   NumbersOf(setCount, setIDs), NumbersOf(smartSetCount, smartSetIDs)})
        .code;
  });
}

TModuleErrorCode DeleteSmartList(FacadeHandle h, uint32_t smartListID) {
  return Guarded([&] { return CallAgent<calls::DeleteSmartList>(h, {smartListID}).code; });
}

TModuleErrorCode EnableDesignActivation(FacadeHandle h) {
  return Guarded([&] { return CallAgent<calls::EnableDesignActivation>(h).code; });
}

// The agent counts the clicks of a font whatever its version.
TModuleErrorCode TrackFontPanelClick(FacadeHandle h, uint32_t fontID, const char*) {
  return Guarded([&] { return CallAgent<calls::TrackFontPanelClick>(h, {fontID}).code; });
}
