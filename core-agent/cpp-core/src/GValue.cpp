#include "GValue.h"

#include <boost/make_shared.hpp>
#include <cstdio>
#include <cstring>

#include "FailedCheck.h"

namespace {

constexpr const char* kTypeNames[] = {
    GValue::kStrTypeName_bool,      GValue::kStrTypeName_byte,   GValue::kStrTypeName_ubyte,
    GValue::kStrTypeName_short,     GValue::kStrTypeName_long,   GValue::kStrTypeName_ulong,
    GValue::kStrTypeName_double,    GValue::kStrTypeName_string, GValue::kStrTypeName_kvtree,
    GValue::kStrTypeName_uLongLong, GValue::kStrTypeName_NULL,
};

GValue::GValueImpl Integral(int64_t value) {
  GValue::GValueImpl element;
  element.integral = value;
  return element;
}

}  // namespace

GValue::GValue() : m_dataPtr(boost::make_shared<std::vector<GValueImpl>>()) {}

void GValue::Replace(EValueType type, bool isArray, std::vector<GValueImpl> elements) {
  m_eValueType = type;
  m_isArray = isArray;
  m_dataPtr = boost::make_shared<std::vector<GValueImpl>>(std::move(elements));
}

void GValue::Assign(bool value) { Replace(kValueType_bool, false, {Integral(value)}); }
void GValue::Assign(char value) { Replace(kValueType_byte, false, {Integral(value)}); }
void GValue::Assign(unsigned char value) { Replace(kValueType_ubyte, false, {Integral(value)}); }
void GValue::Assign(short value) { Replace(kValueType_short, false, {Integral(value)}); }
void GValue::Assign(int value) { Replace(kValueType_long, false, {Integral(value)}); }
void GValue::Assign(unsigned int value) { Replace(kValueType_ulong, false, {Integral(value)}); }
void GValue::Assign(uint64_t value) { Replace(kValueType_uLongLong, false, {Integral(static_cast<int64_t>(value))}); }

void GValue::Assign(double value) {
  int64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  Replace(kValueType_double, false, {Integral(bits)});
}

void GValue::Assign(const std::string& value) {
  GValueImpl element;
  element.text = boost::make_shared<std::string>(value);
  Replace(kValueType_string, false, {element});
}

TModuleErrorCode GValue::CheckType(EValueType type) const {
  RETURN_IF("Value", m_eValueType != type, kValueTypeError);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GValue::Check(EValueType type, size_t index) const {
  PASS_ON_ERROR(CheckType(type));
  RETURN_IF("Value", index >= m_dataPtr->size(), kArrayIndexError);
  return CoreErrorCodes::kSuccess;
}

#define GET_INTEGRAL(Type, type)                                     \
  TModuleErrorCode GValue::GetValue(Type& out, size_t index) const { \
    PASS_ON_ERROR(Check(type, index));                               \
    out = static_cast<Type>((*m_dataPtr)[index].integral);           \
    return CoreErrorCodes::kSuccess;                                 \
  }
GET_INTEGRAL(bool, kValueType_bool)
GET_INTEGRAL(char, kValueType_byte)
GET_INTEGRAL(unsigned char, kValueType_ubyte)
GET_INTEGRAL(short, kValueType_short)
GET_INTEGRAL(int, kValueType_long)
GET_INTEGRAL(unsigned int, kValueType_ulong)
GET_INTEGRAL(uint64_t, kValueType_uLongLong)
#undef GET_INTEGRAL

TModuleErrorCode GValue::GetValue(double& out, size_t index) const {
  PASS_ON_ERROR(Check(kValueType_double, index));
  std::memcpy(&out, &(*m_dataPtr)[index].integral, sizeof out);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GValue::GetValue(std::string& out, size_t index) const {
  PASS_ON_ERROR(Check(kValueType_string, index));
  out = *(*m_dataPtr)[index].text;
  return CoreErrorCodes::kSuccess;
}

GValue::EValueType GValue::GetTypeFromString(const std::string& name) {
  for (int i = 0; i < kValueType_NULL; ++i) {
    if (name == kTypeNames[i]) return static_cast<EValueType>(i);
  }
  return kValueType_NULL;
}

const char* GValue::GetStringFromType(EValueType type) { return kTypeNames[type]; }

TModuleErrorCode GValue::GetValueAsUTF8String(std::string& out, size_t index) const {
  const bool isConvertible = m_eValueType != kValueType_kvtree && m_eValueType != kValueType_NULL;
  RETURN_IF("Value", !isConvertible, kValueConversionError);
  RETURN_IF("Value", index >= m_dataPtr->size(), kArrayIndexError);
  const GValueImpl& element = (*m_dataPtr)[index];
  switch (m_eValueType) {
    case kValueType_string: out = *element.text; break;
    case kValueType_bool: out = element.integral ? "true" : "false"; break;
    case kValueType_uLongLong: out = std::to_string(static_cast<uint64_t>(element.integral)); break;
    case kValueType_double: {
      double value = 0;
      PASS_ON_ERROR(GetValue(value, index));
      char text[40];
      std::snprintf(text, sizeof text, "%.17g", value);
      out = text;
      break;
    }
    default: out = std::to_string(element.integral);
  }
  return CoreErrorCodes::kSuccess;
}
