#include "Services/VPFDictionary.h"

#include "XCore/ECFExtensions/XCFUtils.h"

void VPFDictionary::SetBoolForKey(std::string_view key, bool value) {
  mDictionary.Set(key, platform::Number::FromInteger(value ? 1 : 0));
}

void VPFDictionary::SetIntForKey(std::string_view key, int value) {
  mDictionary.Set(key, platform::Number::FromInteger(value));
}

void VPFDictionary::SetStringFromLongForKey(std::string_view key, long value) {
  XCFUtils::PutLongIntoDictAsString(mDictionary, key, value);
}

void VPFDictionary::SetStringFromULongForKey(std::string_view key, unsigned long value) {
  XCFUtils::PutULongIntoDictAsString(mDictionary, key, value);
}

long VPFDictionary::GetLongFromStringForKey(std::string_view key) const {
  return XCFUtils::GetLongFromDictString(mDictionary, key);
}

void VPFDictionary::AppendItemToArrayForKey(std::string_view key, const VPFDictionary& item) {
  if (!mDictionary.GetArray(key)) mDictionary.Set(key, platform::Array::Create());
  mDictionary.GetArray(key).Append(item.GetDictionary());
}
