#include "host/ActionProperties.h"

#include <algorithm>

#include "host/TypeIDs.h"
#include "platform/Fonts.h"

using namespace host_sdk;

namespace host {

namespace {

using Kind = ReferenceForm::Kind;

// A reference has at most one property, and the object that has it.
struct Target {
  const ReferenceForm* property = nullptr;
  const ReferenceForm* object = nullptr;
};

bool ReadTarget(const ReferenceData& reference, Target& target) {
  for (const ReferenceForm& form : reference.forms) {
    const ReferenceForm*& place = form.kind == Kind::kProperty ? target.property : target.object;
    if (place) return false;
    place = &form;
  }
  return target.object != nullptr;
}

bool IsCurrent(const ReferenceForm& form) {
  return form.kind == Kind::kEnumerated && form.enumerated.type == kTypeOrdinal && form.enumerated.value == kEnumTarget;
}

const Document* FindDocument(const DocumentList& documents, const ReferenceForm& form, SPErr& error) {
  error = kBadParameters;
  if (form.objectClass != kClassDocument) return nullptr;
  const Document* found = nullptr;
  if (form.kind == Kind::kIndex) {
    const auto& all = documents.All();
    if (form.number >= 1 && form.number <= all.size()) found = all[form.number - 1].get();
  } else if (form.kind == Kind::kIdentifier) {
    found = documents.Find(static_cast<int32_t>(form.number));
  } else if (IsCurrent(form)) {
    found = documents.Front();
  } else {
    return nullptr;
  }
  error = found ? kNoErr : kNoSuchObject;
  return found;
}

// The fonts that programs can use now, as lists of equal length.
ActionValue FontList() {
  ListData names, families;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) {
    names.items.emplace_back(font.postScriptName);
    families.items.emplace_back(font.family);
  }
  DescriptorData lists;
  lists.Put(TypeIDOfString("fontPostScriptName"), std::make_shared<const ListData>(std::move(names)));
  lists.Put(TypeIDOfString("fontFamilyName"), std::make_shared<const ListData>(std::move(families)));
  return ObjectValue{TypeIDOfString("fontList"), std::make_shared<const DescriptorData>(std::move(lists))};
}

// One property, and a function that reads its value; it stores nothing if there is no value now.
template <class Object>
struct Property {
  FourCharCode key;
  void (*put)(const Object& object, FourCharCode key, DescriptorData& properties);
};

const Property<DocumentList> kApplicationProperties[] = {
    {kKeyNumberOfDocuments,
     [](const DocumentList& documents, FourCharCode key, DescriptorData& properties) {
       properties.Put(key, static_cast<int32_t>(documents.All().size()));
     }},
    {TypeIDOfString("fontList"),
     [](const DocumentList&, FourCharCode key, DescriptorData& properties) { properties.Put(key, FontList()); }},
};

const Property<Document> kDocumentProperties[] = {
    {kKeyDocumentID,
     [](const Document& document, FourCharCode key, DescriptorData& properties) { properties.Put(key, document.id); }},
    {kKeyTitle, [](const Document& document, FourCharCode key,
                   DescriptorData& properties) { properties.Put(key, document.Title()); }},
    {kKeyFileReference,
     [](const Document& document, FourCharCode key, DescriptorData& properties) {
       if (!document.path.empty()) properties.Put(key, AliasData::OfPath(document.path));
     }},
    {kKeyIsDirty, [](const Document& document, FourCharCode key,
                     DescriptorData& properties) { properties.Put(key, document.isDirty); }},
};

template <class Object, size_t Count>
SPErr Read(const Object& object, const Property<Object> (&table)[Count], const ReferenceForm* wanted,
           DescriptorData& properties) {
  bool isKnown = !wanted;
  for (const Property<Object>& property : table) {
    if (wanted && wanted->key != property.key) continue;
    isKnown = true;
    property.put(object, property.key, properties);
  }
  return isKnown ? kNoErr : kNoSuchObject;
}

}  // namespace

const Document* FindDocument(const DocumentList& documents, const ReferenceData& reference, SPErr& error) {
  Target target;
  error = kBadParameters;
  if (!ReadTarget(reference, target) || target.property) return nullptr;
  return FindDocument(documents, *target.object, error);
}

SPErr ReadProperties(const DocumentList& documents, const ReferenceData& reference, DescriptorData& properties) {
  Target target;
  if (!ReadTarget(reference, target)) return kBadParameters;
  if (target.object->objectClass == kClassApplication) {
    return IsCurrent(*target.object) ? Read(documents, kApplicationProperties, target.property, properties)
                                     : kBadParameters;
  }
  SPErr error = kNoErr;
  const Document* document = FindDocument(documents, *target.object, error);
  return document ? Read(*document, kDocumentProperties, target.property, properties) : error;
}

}  // namespace host
