// The XML form of GValue.
#include <boost/make_shared.hpp>
#include <charconv>
#include <limits>

#include "FailedCheck.h"
#include "GKVTree.h"
#include "GLibXMLNode.h"
#include "GLibXMLSerializable.h"
#include "GStringUtils.h"
#include "XMLElementWriter.h"

namespace {

constexpr const char* kLogIdentifier = "Value";
using Codes = GLibXMLSerializable;

template <class T>
bool IsWithin(int64_t value) {
  return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<T>::max();
}

bool FitsType(GValue::EValueType type, int64_t value) {
  switch (type) {
    case GValue::kValueType_bool: return value == 0 || value == 1;
    case GValue::kValueType_byte: return IsWithin<int8_t>(value);
    case GValue::kValueType_ubyte: return IsWithin<uint8_t>(value);
    case GValue::kValueType_short: return IsWithin<int16_t>(value);
    case GValue::kValueType_long: return IsWithin<int32_t>(value);
    case GValue::kValueType_ulong: return IsWithin<uint32_t>(value);
    default: return true;  // 64 bits: a double's bits, or an unsigned number
  }
}

template <class T>
bool ParseDecimal(const std::string& text, T& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

bool ParseIntegral(GValue::EValueType type, const std::string& text, int64_t& value) {
  if (ParseDecimal(text, value)) return FitsType(type, value);
  uint64_t large = 0;
  if (type != GValue::kValueType_uLongLong || !ParseDecimal(text, large)) return false;
  value = static_cast<int64_t>(large);
  return true;
}

TModuleErrorCode ReadText(const GLibXMLNode& child, const char* name, std::string& text) {
  RETURN_IF(kLogIdentifier, child.GetName() != name, Codes::kInvalidChildElement);
  RETURN_IF(kLogIdentifier, child.GetText(text) != CoreErrorCodes::kSuccess, Codes::kInvalidChildElement);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode ReadTree(const GLibXMLNode& child, GValue::GValueImpl& element) {
  RETURN_IF(kLogIdentifier, child.GetName() != GKVTree::kXMLElementName_kvtree, Codes::kInvalidChildElement);
  element.tree = boost::make_shared<GKVTree>();
  return element.tree->SetFromXMLNode(child);
}

TModuleErrorCode ReadElement(GValue::EValueType type, const GLibXMLNode& child, GValue::GValueImpl& element) {
  if (type == GValue::kValueType_kvtree) return ReadTree(child, element);
  std::string text;
  if (type == GValue::kValueType_string) {
    PASS_ON_ERROR(ReadText(child, GValue::kStrElementName_str, text));
    element.text = boost::make_shared<std::string>(text);
    return CoreErrorCodes::kSuccess;
  }
  PASS_ON_ERROR(ReadText(child, GValue::kStrElementName_integer, text));
  const std::string number = GStringUtils::StripWhitespace(text);
  RETURN_IF(kLogIdentifier, number.empty(), Codes::kRequiredTextIsBlank);
  RETURN_IF(kLogIdentifier, !ParseIntegral(type, number, element.integral), Codes::kInvalidTextContent);
  return CoreErrorCodes::kSuccess;
}

std::string IntegralText(GValue::EValueType type, int64_t value) {
  const bool isUnsigned = type == GValue::kValueType_uLongLong;
  return isUnsigned ? std::to_string(static_cast<uint64_t>(value)) : std::to_string(value);
}

}  // namespace

TModuleErrorCode GValue::SetFromXMLNode(const GLibXMLNode& node) {
  PASS_ON_ERROR(Codes::CheckElement(kLogIdentifier, node, kStrElementName_value));
  std::string typeName, isArray, size;
  PASS_ON_ERROR(Codes::GetRequiredAttribute(kLogIdentifier, node, kStrAttributeName_type, typeName));
  const EValueType type = GetTypeFromString(typeName);
  RETURN_IF(kLogIdentifier, type == kValueType_NULL, Codes::kInvalidAttributeContent);
  node.GetAttribute(kStrAttributeName_isArray, isArray);
  const bool hasSize = node.GetAttribute(kStrAttributeName_size, size);
  const uint32_t count = GStringUtils::UTF8StringToUInt32(size);

  std::vector<GValueImpl> elements;
  for (GLibXMLNode child = node.GetFirstChild(); !child.IsNull(); child = child.GetNext()) {
    if (child.IsBlank()) continue;
    PASS_ON_ERROR(Codes::CheckChild(kLogIdentifier, child));
    PASS_ON_ERROR(ReadElement(type, child, elements.emplace_back()));
  }
  // An empty tree writes nothing, so it may be missing among the children. A single one can be restored.
  const bool areTreesMissing = type == kValueType_kvtree && elements.size() < count;
  if (areTreesMissing && count == 1) elements.emplace_back().tree = boost::make_shared<GKVTree>();
  RETURN_IF(kLogIdentifier, hasSize && elements.size() != count && !areTreesMissing, kValueSizeMismatch);
  Replace(type, GStringUtils::UTF8StringToBool(isArray), std::move(elements));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GValue::CheckForXML(unsigned depth) const {
  for (const GValueImpl& element : *m_dataPtr) {
    RETURN_IF(kLogIdentifier, element.text && !XMLElementWriter::CanHold(*element.text), Codes::kInvalidTextContent);
    if (element.tree) PASS_ON_ERROR(element.tree->CheckForXML(depth + 1));
  }
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GValue::WriteToXMLStream(std::ostream& stream, const std::string& prefix, bool pretty,
                                          unsigned indent) const {
  PASS_ON_ERROR(CheckForXML(0));
  XMLElementWriter writer(stream, prefix, pretty);
  WriteXML(writer, indent);
  return CoreErrorCodes::kSuccess;
}

void GValue::WriteXML(XMLElementWriter& writer, unsigned indent) const {
  writer.Open(kStrElementName_value,
              {{kStrAttributeName_type, GetStringFromType(m_eValueType)},
               {kStrAttributeName_isArray, IsArray() ? "true" : "false"},
               {kStrAttributeName_size, std::to_string(m_dataPtr->size())}},
              indent);
  for (const GValueImpl& element : *m_dataPtr) {
    if (element.text) {
      writer.WriteTextElement(kStrElementName_str, *element.text, indent + 1);
    } else if (element.tree) {
      element.tree->WriteXML(writer, indent + 1);
    } else {
      writer.WriteTextElement(kStrElementName_integer, IntegralText(m_eValueType, element.integral), indent + 1);
    }
  }
  writer.Close(kStrElementName_value, indent);
}
