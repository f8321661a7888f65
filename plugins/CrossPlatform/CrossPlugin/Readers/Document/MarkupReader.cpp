#include "Readers/Document/MarkupReader.h"

#include <libxml/xmlreader.h>

#include <cstring>

struct MarkupReader::Parser {
  struct Free {
    void operator()(xmlTextReader* reader) const { xmlFreeTextReader(reader); }
  };
  std::unique_ptr<xmlTextReader, Free> reader;
};

namespace {

std::string_view ViewOf(const xmlChar* text) {
  return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

std::string_view LocalName(std::string_view name) {
  const size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

int ReadMore(void* stream, char* buffer, int length) {
  return static_cast<int>(static_cast<ByteStream*>(stream)->Read(buffer, static_cast<size_t>(length)));
}

// Keeps the library from printing. The failed read says all that people need.
void Ignore(void*, xmlErrorPtr) {}
void IgnoreText(void*, const char*, ...) {}

}  // namespace

MarkupReader::MarkupReader(ByteStream& stream) : mStream(stream), mParser(std::make_unique<Parser>()) {
  // Without XML_PARSE_HUGE the library limits depth, names, attributes, and the growth by entities.
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOCDATA | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  // Memory that runs out is reported past the handler of the reader.
  xmlSetGenericErrorFunc(nullptr, IgnoreText);
  mParser->reader.reset(xmlReaderForIO(ReadMore, nullptr, &mStream, nullptr, nullptr, kOptions));
  if (mParser->reader) xmlTextReaderSetStructuredErrorHandler(mParser->reader.get(), Ignore, nullptr);
}

MarkupReader::~MarkupReader() = default;

MarkupReader::Event MarkupReader::Next() {
  if (mIsEndPending) {
    mIsEndPending = false;
    return Event::kEnd;
  }
  xmlTextReader* reader = mParser->reader.get();
  while (reader && mProblem.empty()) {
    const int status = xmlTextReaderRead(reader);
    if (status == 0) break;
    if (status < 0) {
      mProblem = mStream.Problem().empty() ? "its text is no well-formed XML" : mStream.Problem();
      break;
    }
    switch (xmlTextReaderNodeType(reader)) {
      case XML_READER_TYPE_ELEMENT: mIsEndPending = xmlTextReaderIsEmptyElement(reader) == 1; return Event::kStart;
      case XML_READER_TYPE_END_ELEMENT: return Event::kEnd;
      case XML_READER_TYPE_TEXT:
      case XML_READER_TYPE_CDATA:
      case XML_READER_TYPE_SIGNIFICANT_WHITESPACE: return Event::kText;
      default: break;
    }
  }
  return Event::kDone;
}

std::string_view MarkupReader::Name() const { return LocalName(ViewOf(xmlTextReaderConstName(mParser->reader.get()))); }

std::string_view MarkupReader::Value() const { return ViewOf(xmlTextReaderConstValue(mParser->reader.get())); }

bool MarkupReader::MoveToAttribute(bool isFirst) const {
  xmlTextReader* reader = mParser->reader.get();
  return (isFirst ? xmlTextReaderMoveToFirstAttribute(reader) : xmlTextReaderMoveToNextAttribute(reader)) == 1;
}

void MarkupReader::LeaveAttributes() const { xmlTextReaderMoveToElement(mParser->reader.get()); }

std::string MarkupReader::Attribute(const char* name, const char* prefix) const {
  std::string value;
  for (bool is = MoveToAttribute(true); is; is = MoveToAttribute(false)) {
    const std::string_view full = ViewOf(xmlTextReaderConstName(mParser->reader.get()));
    if (LocalName(full) != name) continue;
    const size_t length = full.size() - std::strlen(name);
    if (prefix && full.substr(0, length == 0 ? 0 : length - 1) != prefix) continue;
    value = Value();
    break;
  }
  LeaveAttributes();
  return value;
}

bool HasCharacters(std::string_view text) { return text.find_first_not_of(" \t\r\n") != std::string_view::npos; }
