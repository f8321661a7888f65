// Any bytes as the preferences file: a change is stored together with the content of a valid file, and a damaged file
// is kept under another name.
#include "frameworks/VelorantPlugins/Preferences.h"

#include "Check.h"
#include "Input.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/PropertyList.h"
#include "platform/Trace.h"
#include "support/TempFolder.h"

namespace {

using namespace platform;

std::string Content(const std::string& path) {
  std::string content;
  CHECK(!ReadFile(path, content));
  return content;
}

void CheckReads(Preferences& preferences, const Dictionary& before) {
  for (size_t i = 0; i < before.Count(); ++i) {
    const std::string_view key = before.KeyAt(i);
    CHECK(preferences.Contains(key));
    CHECK(preferences.GetString(key).View() == before.GetString(key).View());
    const Value value = before.ValueAt(i);
    if (value.Is(ValueType::kBoolean)) CHECK(preferences.GetInteger(key) == (Boolean(value).IsTrue() ? 1 : 0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  Places places;
  places.preferencesFile = sFolder.Path() + "/preferences.plist";
  SetPlaces(places);
  const std::string aside = places.preferencesFile + ".damaged";
  CHECK(!RemoveTree(aside));
  const std::string_view bytes = BytesOf(data, size);
  sFolder.Write("preferences.plist", bytes);
  const Dictionary before(ParseXMLPropertyList(bytes).value);

  Preferences preferences;
  if (before) CheckReads(preferences, before);
  preferences.Set("Fuzz", String::FromUTF8("kept"));
  const Dictionary after(ParseXMLPropertyList(Content(places.preferencesFile)).value);
  CHECK(after && after.GetString("Fuzz").View() == "kept");
  CHECK(FileExists(aside) == !before);
  if (!before) CHECK(Content(aside) == bytes);
  for (size_t i = 0; i < before.Count(); ++i) CHECK(before.KeyAt(i) == "Fuzz" || after.Contains(before.KeyAt(i)));
  return 0;
}
