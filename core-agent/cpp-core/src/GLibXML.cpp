#include "GLibXML.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>
#include <memory>

#include "FailedCheck.h"

namespace {

constexpr const char* kLogIdentifier = "LibXML";

struct FreeParser {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

// Called at the start of a document type, before its declarations.
void RefuseDocumentType(void* parser, const xmlChar*, const xmlChar*, const xmlChar*) {
  xmlStopParser(static_cast<xmlParserCtxt*>(parser));
}

}  // namespace

TModuleErrorCode GLibXML::ParseBuffer(const char* buffer, size_t length, GLibXMLDoc& doc) {
  RETURN_IF(kLogIdentifier, buffer == nullptr || length == 0 || length > INT_MAX, kParseFailed);
  const Parser parser(xmlCreateMemoryParserCtxt(buffer, static_cast<int>(length)));
  RETURN_IF(kLogIdentifier, parser == nullptr, kParseFailed);
  xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  parser->sax->internalSubset = RefuseDocumentType;
  xmlParseDocument(parser.get());
  GLibXMLDoc parsed(parser->myDoc);
  parser->myDoc = nullptr;
  RETURN_IF(kLogIdentifier, !parser->wellFormed || parser->errNo == XML_ERR_USER_STOP || parsed.IsNull(), kParseFailed);
  doc = std::move(parsed);
  return CoreErrorCodes::kSuccess;
}
