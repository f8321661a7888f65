#include "XMLElementWriter.h"

#include <algorithm>

#include "GStringUtils.h"
#include "platform/TextEncoding.h"

namespace {

// Escapes what a reader would change: a bare carriage return becomes a line feed, and line ends and tabs in attributes
// become blanks.
std::string Escaped(const std::string& text, bool isAttribute) {
  std::string out = GStringUtils::StringReplace(GStringUtils::EscapeRequiredXMLEntities(text), "\r", "&#13;");
  if (!isAttribute) return out;
  return GStringUtils::StringReplace(GStringUtils::StringReplace(out, "\n", "&#10;"), "\t", "&#9;");
}

}  // namespace

XMLElementWriter::XMLElementWriter(std::ostream& stream, const std::string& prefix, bool pretty)
    : mStream(stream), mPrefix(prefix.empty() ? "" : GStringUtils::EnsureEndsWith(prefix, ":")), mIsPretty(pretty) {}

void XMLElementWriter::BeginLine(unsigned indent) {
  if (mIsPretty) mStream << std::string(indent, '\t');
}

void XMLElementWriter::EndLine() {
  if (mIsPretty) mStream << '\n';
}

void XMLElementWriter::Open(const char* name, const Attributes& attributes, unsigned indent) {
  BeginLine(indent);
  mStream << '<' << mPrefix << name;
  for (const auto& [key, value] : attributes) mStream << ' ' << key << "=\"" << Escaped(value, true) << '"';
  mStream << '>';
  EndLine();
}

void XMLElementWriter::Close(const char* name, unsigned indent) {
  BeginLine(indent);
  mStream << "</" << mPrefix << name << '>';
  EndLine();
}

void XMLElementWriter::WriteTextElement(const char* name, const std::string& text, unsigned indent) {
  BeginLine(indent);
  mStream << '<' << mPrefix << name << '>' << Escaped(text, false) << "</" << mPrefix << name << '>';
  EndLine();
}

bool XMLElementWriter::CanHold(const std::string& text) {
  const auto isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  if (!platform::IsValidUTF8(text) || std::any_of(text.begin(), text.end(), isControl)) return false;
  // U+FFFE and U+FFFF are not characters.
  return text.find("\xEF\xBF\xBE") == std::string::npos && text.find("\xEF\xBF\xBF") == std::string::npos;
}
