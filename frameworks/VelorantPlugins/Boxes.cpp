#include "frameworks/VelorantPlugins/Boxes.h"

#include "frameworks/VelorantPlugins/Texts.h"
#include "platform/TextEncoding.h"

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace boxes {

namespace {

void AppendPart(std::string& description, std::string_view part) {
  if (part.empty()) return;
  if (!description.empty()) description += ", ";
  description += part;
}

std::string DescriptionOf(const Dictionary& record) {
  std::string description;
  AppendPart(description, record.GetString("Foundry").View());
  const String version = record.GetString("Version");
  if (!version.IsEmpty()) AppendPart(description, texts::Formatted("FontVersion", version.View()));
  AppendPart(description, record.GetString("FontKind").View());
  AppendPart(description, record.GetString("WorkgroupName").View());
  // Two files can be equal in all of the above.
  AppendPart(description, record.GetString("OutlineFileName").View());
  if (record.GetString("IsActive").View() == "1") AppendPart(description, texts::Localized("FontIsActive"));
  return description;
}

}  // namespace

Dictionary MakeBox(const char* kind, const char* headerKey, const char* messageKey,
                   std::initializer_list<const char*> buttonKeys) {
  Dictionary box = Dictionary::Create();
  box.Set("Kind", kind);
  if (headerKey) box.Set("Header", texts::Localized(headerKey));
  if (messageKey) box.Set("Message", texts::Localized(messageKey));
  Array buttons = Array::Create();
  for (const char* key : buttonKeys) buttons.Append(String::FromUTF8(texts::Localized(key)));
  box.Set("Buttons", buttons);
  return box;
}

int32_t ButtonOf(const Dictionary& box, const Dictionary& answer) {
  const int64_t button = answer.GetInteger("Button");
  const auto count = static_cast<int64_t>(box.GetArray("Buttons").Count());
  return button >= 1 && button <= count ? static_cast<int32_t>(button) : kClosed;
}

int64_t NumberOf(const Dictionary& record, std::string_view key, int64_t otherwise) {
  if (const String text = record.GetString(key); text) return platform::IntegerOfText(text.View());
  return record.GetInteger(key, otherwise);
}

bool FlagOf(const Dictionary& dictionary, std::string_view key, bool otherwise) {
  return dictionary.GetBoolean(key, dictionary.GetInteger(key, otherwise) != 0);
}

Dictionary DescribeFont(const Dictionary& record) {
  Dictionary described = record.Copy();
  described.Set("Description", DescriptionOf(record));
  if (const Array replacements = record.GetArray("PossibleReplacements"); replacements) {
    described.Set("PossibleReplacements", DescribeFonts(replacements));
  }
  return described;
}

Array DescribeFonts(const Array& records) {
  Array described = Array::Create();
  for (size_t i = 0; i < records.Count(); ++i) {
    if (const Dictionary record(records.At(i)); record) described.Append(DescribeFont(record));
  }
  return described;
}

}  // namespace boxes
