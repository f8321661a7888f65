#include "host/TypeIDs.h"

#include <vector>

namespace host {

namespace {

struct FixedName {
  const char* name;
  FourCharCode code;
};

constexpr FixedName kFixedNames[] = {
    {"open", kEventOpen},
    {"make", kEventMake},
    {"close", kEventClose},
    {"save", kEventSave},
    {"select", kEventSelect},
    {"application", kClassApplication},
    {"document", kClassDocument},
    {"property", host_sdk::Code("Prpr")},
    {"null", kKeyTarget},
    {"in", kKeyIn},
    {"new", kKeyNew},
    {"saving", kKeySaving},
    {"documentID", kKeyDocumentID},
    {"fileReference", kKeyFileReference},
    {"isDirty", kKeyIsDirty},
    {"title", kKeyTitle},
    {"numberOfDocuments", kKeyNumberOfDocuments},
    {"ordinal", kTypeOrdinal},
    {"targetEnum", kEnumTarget},
    {"yesNo", kTypeYesNo},
    {"yes", kEnumYes},
    {"no", kEnumNo},
};

// Names that got a code at run time. Their codes start at 1, below every four-character code.
std::vector<std::string>& RuntimeNames() {
  static std::vector<std::string> sNames;
  return sNames;
}

}  // namespace

FourCharCode TypeIDOfString(std::string_view name) {
  for (const FixedName& fixed : kFixedNames) {
    if (name == fixed.name) return fixed.code;
  }
  auto& names = RuntimeNames();
  for (size_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) return static_cast<FourCharCode>(i + 1);
  }
  names.emplace_back(name);
  return static_cast<FourCharCode>(names.size());
}

std::string StringOfTypeID(FourCharCode code) {
  for (const FixedName& fixed : kFixedNames) {
    if (code == fixed.code) return fixed.name;
  }
  const auto& names = RuntimeNames();
  return code >= 1 && code <= names.size() ? names[code - 1] : std::string();
}

}  // namespace host
