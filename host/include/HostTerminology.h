// The host's terminology: the codes of its classes, enumerated values, events, keys and types by the names of their
// constants, in this order. A code may have several names, of different kinds.
//
// HOST_TERMINOLOGY(X) expands X(name, code) for each; every name is also a constant below.
#pragma once

#include "host/include/HostSuites.h"

#define HOST_TERMINOLOGY(X)              \
  X(classAlias, kTypeAlias)              \
  X(classApplication, Code("capp"))      \
  X(classDocument, Code("Dcmn"))         \
  X(classEnumerated, kTypeEnumerated)    \
  X(classFloat, kTypeFloat)              \
  X(classInteger, kTypeInteger)          \
  X(classLayer, Code("Lyr "))            \
  X(classObject, kTypeObject)            \
  X(classProperty, Code("Prpr"))         \
  X(classTextLayer, Code("TxLr"))        \
  X(classTextStyle, Code("TxtS"))        \
  X(enumAntiAliasCrisp, Code("AnCr"))    \
  X(enumAntiAliasHigh, Code("AnHi"))     \
  X(enumAntiAliasLow, Code("AnLo"))      \
  X(enumAntiAliasMedium, Code("AnMd"))   \
  X(enumAntiAliasNone, Code("Anno"))     \
  X(enumAntiAliasStrong, Code("AnSt"))   \
  X(enumNo, Code("N   "))                \
  X(enumTarget, Code("Trgt"))            \
  X(enumYes, Code("Ys  "))               \
  X(eventClose, Code("Cls "))            \
  X(eventMake, Code("Mk  "))             \
  X(eventOpen, Code("Opn "))             \
  X(eventSave, Code("save"))             \
  X(eventSelect, Code("slct"))           \
  X(keyAntiAlias, Code("AntA"))          \
  X(keyDocumentID, Code("DocI"))         \
  X(keyFileReference, Code("FilR"))      \
  X(keyFontName, Code("FntN"))           \
  X(keyIn, Code("In  "))                 \
  X(keyIsDirty, Code("IsDr"))            \
  X(keyName, Code("Nm  "))               \
  X(keyNew, Code("Nw  "))                \
  X(keyNumberOfDocuments, Code("NmbD"))  \
  X(keyOperation, Code("Oper"))          \
  X(keySaving, Code("Svng"))             \
  X(keyServerPort, Code("SPor"))         \
  X(keyTarget, Code("null"))             \
  X(keyText, Code("Txt "))               \
  X(keyTitle, Code("Ttl "))              \
  X(typeAlias, kTypeAlias)               \
  X(typeAntiAlias, Code("Annt"))         \
  X(typeBoolean, kTypeBoolean)           \
  X(typeEnumerated, kTypeEnumerated)     \
  X(typeFloat, kTypeFloat)               \
  X(typeGlobalObject, kTypeGlobalObject) \
  X(typeInteger, kTypeInteger)           \
  X(typeNull, Code("null"))              \
  X(typeObject, kTypeObject)             \
  X(typeObjectReference, kTypeReference) \
  X(typeOrdinal, Code("Ordn"))           \
  X(typePath, kTypePath)                 \
  X(typeText, kTypeText)                 \
  X(typeValueList, kTypeList)            \
  X(typeYesNo, Code("YsN "))

namespace host_sdk {

#define HOST_CONSTANT(name, code) inline constexpr FourCharCode name = code;
HOST_TERMINOLOGY(HOST_CONSTANT)
#undef HOST_CONSTANT

// The plug-in's keyServerPort while it is not connected to a font manager: no port, so that a panel need not try.
inline constexpr int32_t kNoFontManagerPort = 0x7FFFFFFF;

}  // namespace host_sdk
