// The host's suites with documents in memory: every object that the plug-in makes and every suite that it acquires is
// counted, every event that it plays is recorded, and any property or suite can be made to fail.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/include/HostSuites.h"
#include "platform/TextEncoding.h"

// The objects that are opaque to the plug-in.
namespace host_sdk {
struct HandleBlock {
  int32_t kind = kAliasKindUnicode;
  std::string path;
};
struct ZStringObject {
  std::u16string text;
};
struct ActionList {
  std::vector<std::string> texts;
};
struct ActionReference {
  FourCharCode property = 0, objectClass = 0;
  uint32_t index = 0, identifier = 0;  // both 0: the current one
};
struct ActionDescriptor {
  struct Item {
    FourCharCode type = 0;
    int32_t number = 0;  // integer, boolean, class of an object, value of an enumeration
    std::string text;    // text, path of an alias
    std::vector<std::string> texts;
    std::shared_ptr<ActionDescriptor> object;
    ActionReference reference;
  };
  std::map<FourCharCode, Item> items;

  ActionDescriptor& Put(FourCharCode key, Item item) {
    items[key] = std::move(item);
    return *this;
  }
};
}  // namespace host_sdk

namespace fakes {

using host_sdk::Code;

struct FakeHostDocument {
  int32_t id = 0;
  std::string path;  // empty while untitled
  bool isDirty = false;
};

// While one lives, it is the host. One at a time.
class FakeHost {
 public:
  FakeHost() { sCurrent = this; }
  ~FakeHost() { sCurrent = nullptr; }
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;
  static FakeHost& Current() { return *sCurrent; }
  static const host_sdk::SPBasicSuite& Basic();

  // Puts a document in front; its ID.
  int32_t Add(const std::string& path) {
    documents.push_back({++lastID, path, false});
    return front = lastID;
  }
  void Remove(int32_t id) {
    std::erase_if(documents, [&](const FakeHostDocument& document) { return document.id == id; });
    front = documents.empty() ? 0 : documents.back().id;
  }
  FakeHostDocument* Find(int32_t id) {
    const auto found =
        std::find_if(documents.begin(), documents.end(), [&](const auto& each) { return each.id == id; });
    return found == documents.end() ? nullptr : &*found;
  }
  // What an open event brings along.
  static host_sdk::ActionDescriptor AliasOf(const std::string& path) {
    host_sdk::ActionDescriptor descriptor;
    if (!path.empty()) descriptor.Put(Code("null"), {host_sdk::kTypeAlias, 0, path, {}, nullptr, {}});
    return descriptor;
  }

  std::vector<FakeHostDocument> documents;
  int32_t front = 0;  // 0: none
  int32_t lastID = 100;
  int32_t aliasKind = host_sdk::kAliasKindUnicode;
  std::vector<std::string> fontNames;  // of the application
  std::set<host_sdk::FourCharCode> failingProperties;
  std::set<std::string> missingSuites;
  std::set<host_sdk::FourCharCode> failingNotifiers;
  host_sdk::SPErr blockError = host_sdk::kNoErr;
  std::function<void(host_sdk::FourCharCode event)> onPlay;  // before the event is done

  // What happened.
  std::vector<std::string> played;
  std::vector<std::pair<host_sdk::FourCharCode, host_sdk::NotifierCallback>> notifiers;
  int objects = 0;  // made and not yet freed
  std::vector<std::unique_ptr<char[]>> blocks;
  std::map<std::string, int> suites;  // acquired and not yet released

  int AcquiredSuites() const {
    int count = 0;
    for (const auto& [name, acquired] : suites) count += acquired;
    return count;
  }

 private:
  inline static FakeHost* sCurrent = nullptr;
};

namespace host_suites {

using namespace host_sdk;  // NOLINT: this is the host's side
using Item = ActionDescriptor::Item;

template <class T>
SPErr Give(T** out, T value = T()) {
  ++FakeHost::Current().objects;
  *out = new T(std::move(value));
  return kNoErr;
}
template <class T>
SPErr TakeBack(T* object) {
  --FakeHost::Current().objects;
  delete object;
  return kNoErr;
}

inline SPErr CopyText(const std::string& text, char* buffer, uint32_t size) {
  std::strncpy(buffer, text.c_str(), size);
  return kNoErr;
}

// Gives an item of the type to the reader; an error if there is none.
template <class Read>
SPErr ReadItem(PIActionDescriptor descriptor, FourCharCode key, FourCharCode type, const Read& read) {
  const auto found = descriptor->items.find(key);
  if (found == descriptor->items.end() || found->second.type != type) return kNoSuchObject;
  read(found->second);
  return kNoErr;
}

inline SPErr PutItem(PIActionDescriptor descriptor, FourCharCode key, Item item) {
  descriptor->Put(key, std::move(item));
  return kNoErr;
}

inline void AddWriters(PSActionDescriptorSuite& suite) {
  suite.PutInteger = [](PIActionDescriptor descriptor, FourCharCode key, int32_t value) {
    return PutItem(descriptor, key, {kTypeInteger, value, {}, {}, nullptr, {}});
  };
  suite.PutEnumerated = [](PIActionDescriptor descriptor, FourCharCode key, FourCharCode, FourCharCode value) {
    return PutItem(descriptor, key, {kTypeEnumerated, static_cast<int32_t>(value), {}, {}, nullptr, {}});
  };
  suite.PutAlias = [](PIActionDescriptor descriptor, FourCharCode key, Handle alias) {
    return PutItem(descriptor, key, {kTypeAlias, 0, alias->path, {}, nullptr, {}});
  };
  suite.PutReference = [](PIActionDescriptor descriptor, FourCharCode key, PIActionReference value) {
    return PutItem(descriptor, key, {kTypeReference, 0, {}, {}, nullptr, *value});
  };
}

inline void AddReaders(PSActionDescriptorSuite& suite) {
  suite.GetInteger = [](PIActionDescriptor descriptor, FourCharCode key, int32_t* value) {
    return ReadItem(descriptor, key, kTypeInteger, [&](const Item& item) { *value = item.number; });
  };
  suite.GetBoolean = [](PIActionDescriptor descriptor, FourCharCode key, int32_t* value) {
    return ReadItem(descriptor, key, kTypeBoolean, [&](const Item& item) { *value = item.number; });
  };
  suite.GetObject = [](PIActionDescriptor descriptor, FourCharCode key, FourCharCode* objectClass,
                       PIActionDescriptor* value) {
    return ReadItem(descriptor, key, kTypeObject, [&](const Item& item) {
      *objectClass = static_cast<FourCharCode>(item.number);
      Give(value, *item.object);
    });
  };
  suite.GetAlias = [](PIActionDescriptor descriptor, FourCharCode key, Handle* alias) {
    return ReadItem(descriptor, key, kTypeAlias, [&](const Item& item) {
      Give(alias, HandleBlock{FakeHost::Current().aliasKind, item.text});
    });
  };
  suite.GetList = [](PIActionDescriptor descriptor, FourCharCode key, PIActionList* value) {
    return ReadItem(descriptor, key, kTypeList, [&](const Item& item) { Give(value, ActionList{item.texts}); });
  };
}

inline const PSActionDescriptorSuite& Descriptors() {
  static const PSActionDescriptorSuite sSuite = [] {
    PSActionDescriptorSuite suite{};
    suite.Make = [](PIActionDescriptor* out) { return Give(out); };
    suite.Free = [](PIActionDescriptor descriptor) { return TakeBack(descriptor); };
    suite.HasKey = [](PIActionDescriptor descriptor, FourCharCode key, int32_t* has) {
      *has = static_cast<int32_t>(descriptor->items.count(key));
      return kNoErr;
    };
    suite.GetCount = [](PIActionDescriptor descriptor, uint32_t* count) {
      *count = static_cast<uint32_t>(descriptor->items.size());
      return kNoErr;
    };
    suite.Clear = [](PIActionDescriptor descriptor) {
      descriptor->items.clear();
      return kNoErr;
    };
    suite.GetType = [](PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type) {
      *type = descriptor->items[key].type;
      return kNoErr;
    };
    AddWriters(suite);
    AddReaders(suite);
    return suite;
  }();
  return sSuite;
}

inline const PSActionReferenceSuite& References() {
  static const PSActionReferenceSuite sSuite = {
      [](PIActionReference* out) { return Give(out); },
      [](PIActionReference reference) { return TakeBack(reference); },
      [](PIActionReference reference, FourCharCode, FourCharCode key) { return reference->property = key, kNoErr; },
      [](PIActionReference reference, FourCharCode objectClass, FourCharCode, FourCharCode) {
        return reference->objectClass = objectClass, kNoErr;
      },
      [](PIActionReference reference, FourCharCode objectClass, uint32_t index) {
        return reference->objectClass = objectClass, reference->index = index, kNoErr;
      },
      [](PIActionReference reference, FourCharCode objectClass, uint32_t identifier) {
        return reference->objectClass = objectClass, reference->identifier = identifier, kNoErr;
      },
  };
  return sSuite;
}

inline const PSActionListSuite& Lists() {
  static const PSActionListSuite sSuite = [] {
    PSActionListSuite suite{};
    suite.Free = [](PIActionList list) { return TakeBack(list); };
    suite.GetCount = [](PIActionList list, uint32_t* count) {
      *count = static_cast<uint32_t>(list->texts.size());
      return kNoErr;
    };
    suite.GetStringLength = [](PIActionList list, uint32_t index, uint32_t* length) {
      *length = static_cast<uint32_t>(list->texts[index].size());
      return kNoErr;
    };
    suite.GetString = [](PIActionList list, uint32_t index, char* buffer, uint32_t size) {
      return CopyText(list->texts[index], buffer, size);
    };
    return suite;
  }();
  return sSuite;
}

inline const PSAliasSuite& Aliases() {
  static const PSAliasSuite sSuite = {
      [](Handle alias, int32_t* kind) { return *kind = alias->kind, kNoErr; },
      [](Handle alias, char* buffer, uint32_t size) {
        buffer[size - 1] = '\0';
        return CopyText(alias->path, buffer, size - 1);
      },
      [](Handle alias, uint16_t* buffer, uint32_t size, uint32_t* length) {
        const std::u16string text = platform::UTF8ToUTF16(alias->path).value_or(u"");
        *length = static_cast<uint32_t>(text.size());
        std::copy_n(text.begin(), std::min<size_t>(size, text.size()), buffer);
        return kNoErr;
      },
      [](const char* path, Handle* alias) {
        return Give(alias, HandleBlock{kAliasKindDirect, path});
      },
      [](const uint16_t* text, uint32_t length, Handle* alias) {
        const std::u16string units(text, text + length);
        return Give(alias, HandleBlock{kAliasKindUnicode, platform::UTF16ToUTF8(units).value_or("")});
      },
  };
  return sSuite;
}

inline const PSHandleSuite& Handles() {
  static const PSHandleSuite sSuite = {
      [](Handle handle) { return TakeBack(handle); },
      [](Handle handle) { return static_cast<int32_t>(handle->path.size()); },
  };
  return sSuite;
}

inline const ASZStringSuite& Strings() {
  static const ASZStringSuite sSuite = {
      [](const uint16_t* text, uint32_t length, ASZString* out) {
        return Give(out, ZStringObject{std::u16string(text, text + length)});
      },
      [](ASZString string) { return static_cast<uint32_t>(string->text.size()); },
      [](ASZString string, uint16_t* buffer, uint32_t size) {
        std::copy_n(string->text.begin(), std::min<size_t>(size, string->text.size()), buffer);
        return kNoErr;
      },
      [](ASZString string) { return TakeBack(string); },
  };
  return sSuite;
}

inline const ASZStringSuite2& StringsInUTF8() {
  static const ASZStringSuite2 sSuite = {
      [](const char* text, ASZString* out) {
        return Give(out, ZStringObject{platform::UTF8ToUTF16(text).value_or(u"")});
      },
      [](ASZString string) { return static_cast<uint32_t>(platform::UTF16ToUTF8(string->text).value_or("").size()); },
      [](ASZString string, char* buffer, uint32_t size) {
        return CopyText(platform::UTF16ToUTF8(string->text).value_or(""), buffer, size);
      },
  };
  return sSuite;
}

inline const FakeHostDocument* Referenced(const ActionReference& reference) {
  FakeHost& host = FakeHost::Current();
  if (reference.index == 0) return host.Find(host.front);
  return reference.index <= host.documents.size() ? &host.documents[reference.index - 1] : nullptr;
}

inline bool PutProperty(const ActionReference& reference, ActionDescriptor& out) {
  FakeHost& host = FakeHost::Current();
  const FourCharCode key = reference.property;
  if (host.failingProperties.count(key) > 0) return false;
  if (reference.objectClass == Code("capp")) {
    const auto fonts = std::make_shared<ActionDescriptor>();
    fonts->Put(Code("psnm"), {kTypeList, 0, {}, host.fontNames, nullptr, {}});
    if (key == Code("NmbD"))
      out.Put(key, {kTypeInteger, static_cast<int32_t>(host.documents.size()), {}, {}, nullptr, {}});
    if (key == Code("fnts")) out.Put(key, {kTypeObject, 0, {}, {}, fonts, {}});
    return true;
  }
  const FakeHostDocument* document = Referenced(reference);
  if (!document) return false;
  if (key == Code("DocI")) out.Put(key, {kTypeInteger, document->id, {}, {}, nullptr, {}});
  if (key == Code("IsDr")) out.Put(key, {kTypeBoolean, document->isDirty ? 1 : 0, {}, {}, nullptr, {}});
  if (key == Code("FilR") && !document->path.empty()) out.Put(key, {kTypeAlias, 0, document->path, {}, nullptr, {}});
  return true;
}

inline SPErr Play(FourCharCode event, PIActionDescriptor descriptor, int32_t dialogMode, PIActionDescriptor* result) {
  FakeHost& host = FakeHost::Current();
  *result = nullptr;
  if (host.onPlay) host.onPlay(event);
  const std::string mode = dialogMode == kSilentDialogMode ? "" : " with dialogs";
  if (event == Code("slct")) {
    host.front = static_cast<int32_t>(descriptor->items[Code("null")].reference.identifier);
    host.played.push_back("select " + std::to_string(host.front) + mode);
  } else if (event == Code("Cls ")) {
    const bool drops = descriptor->items[Code("Svng")].number == static_cast<int32_t>(Code("N   "));
    host.played.push_back((drops ? "close " : "save and close ") + std::to_string(host.front) + mode);
    host.Remove(host.front);
  } else if (event == Code("Opn ")) {
    const std::string path = descriptor->items[Code("null")].text;
    host.Add(path);
    host.played.push_back("open " + path + mode);
  } else {
    host.played.push_back((event == Code("updL") ? "updateLayouts" : "replaceSubstitutes") + mode);
  }
  return kNoErr;
}

inline const PSActionControlSuite& Control() {
  static const PSActionControlSuite sSuite = {
      Play,
      [](PIActionDescriptor* result, PIActionReference reference) {
        ActionDescriptor properties;
        return PutProperty(*reference, properties) ? Give(result, properties) : kNoSuchObject;
      },
      [](const char* name, FourCharCode* code) {
        const std::map<std::string, FourCharCode> codes = {{"fontList", Code("fnts")},
                                                           {"fontPostScriptName", Code("psnm")},
                                                           {"updateLayouts", Code("updL")},
                                                           {"replaceSubstitutes", Code("repS")}};
        return *code = codes.at(name), kNoErr;
      },
      nullptr,
      [](SPPluginRef, FourCharCode event, NotifierCallback callback, void*) {
        FakeHost& host = FakeHost::Current();
        if (host.failingNotifiers.count(event) > 0) return kBadParameters;
        host.notifiers.emplace_back(event, callback);
        return kNoErr;
      },
      [](SPPluginRef, FourCharCode event, NotifierCallback callback) {
        FakeHost& host = FakeHost::Current();
        if (host.failingNotifiers.count(event) > 0) return kBadParameters;
        std::erase(host.notifiers, std::pair(event, callback));
        return kNoErr;
      },
  };
  return sSuite;
}

inline const SPBlocksSuite& Blocks() {
  static const SPBlocksSuite sSuite = {
      [](size_t size, const char*, void** block) {
        FakeHost& host = FakeHost::Current();
        if (host.blockError != kNoErr) return host.blockError;
        host.blocks.push_back(std::make_unique<char[]>(size));
        *block = std::memset(host.blocks.back().get(), 0xEE, size);
        return kNoErr;
      },
      [](void* block) {
        std::erase_if(FakeHost::Current().blocks, [&](const auto& each) { return each.get() == block; });
        return kNoErr;
      },
  };
  return sSuite;
}

inline const void* SuiteNamed(const std::string& name, int32_t version) {
  const std::map<std::string, const void*> suites = {
      {kSPBlocksSuite, &Blocks()},
      {kPSActionControlSuite, &Control()},
      {kPSActionDescriptorSuite, &Descriptors()},
      {kPSActionReferenceSuite, &References()},
      {kPSActionListSuite, &Lists()},
      {kPSAliasSuite, &Aliases()},
      {kPSHandleSuite, &Handles()},
      {kASZStringSuite, version == kASZStringSuite2Version ? static_cast<const void*>(&StringsInUTF8()) : &Strings()},
  };
  const auto found = suites.find(name);
  return found == suites.end() ? nullptr : found->second;
}

}  // namespace host_suites

inline const host_sdk::SPBasicSuite& FakeHost::Basic() {
  static const host_sdk::SPBasicSuite sSuite = {
      [](const char* name, int32_t version, const void** suite) {
        FakeHost& host = Current();
        *suite = host.missingSuites.count(name) > 0 ? nullptr : host_suites::SuiteNamed(name, version);
        if (!*suite) return host_sdk::kSuiteNotFound;
        ++host.suites[name];
        return host_sdk::kNoErr;
      },
      [](const char* name, int32_t) { return --Current().suites[name], host_sdk::kNoErr; },
      [](const char* a, const char* b) { return static_cast<int32_t>(std::strcmp(a, b) == 0); },
  };
  return sSuite;
}

}  // namespace fakes
