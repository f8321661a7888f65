#include "platform/XMPPacketLimits.h"

#include <libxml/parser.h>

#include <cstring>
#include <memory>
#include <vector>

namespace platform {

namespace {

constexpr size_t kDeepest = 1000;         // elements; a level of an array takes two
constexpr size_t kMostInGroup = 2000;     // properties of one namespace or structure
constexpr size_t kMostItems = 1'000'000;  // elements and attributes of all kinds

struct Count {
  std::vector<size_t> groups;  // number of entries in each open element
  size_t items = 0;
  std::string excess;

  void Add(size_t most, size_t count, const char* of) {
    if (count > most && excess.empty()) excess = "has more than " + std::to_string(most) + of;
  }
};

void StartElement(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int, const xmlChar**,
                  int attributes, int, const xmlChar**) {
  const auto parser = static_cast<xmlParserCtxtPtr>(context);
  Count& count = *static_cast<Count*>(parser->_private);
  const bool isItem = std::strcmp(reinterpret_cast<const char*>(name), "li") == 0;
  if (!isItem && !count.groups.empty()) count.Add(kMostInGroup, ++count.groups.back(), " properties in one group");
  count.groups.push_back(static_cast<size_t>(attributes));
  count.Add(kMostInGroup, count.groups.back(), " properties in one group");
  count.items += 1 + static_cast<size_t>(attributes);
  count.Add(kMostItems, count.items, " properties and items");
  count.Add(kDeepest, count.groups.size(), " levels");
  if (!count.excess.empty()) xmlStopParser(parser);
}

void EndElement(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
  Count& count = *static_cast<Count*>(static_cast<xmlParserCtxtPtr>(context)->_private);
  if (!count.groups.empty()) count.groups.pop_back();
}

}  // namespace

std::string DescribeExcess(const std::string& packet, PacketDamage damage) {
  if (packet.empty()) return "";
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = &StartElement;
  handler.endElementNs = &EndElement;
  Count count;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
      xmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, nullptr), &xmlFreeParserCtxt);
  if (!parser) return "needs more memory than there is";
  parser->_private = &count;
  // Disable the parser's own limits on length and depth; we check them.
  xmlCtxtUseOptions(parser.get(), XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  const int failure = xmlParseChunk(parser.get(), packet.data(), static_cast<int>(packet.size()), 1);
  if (!count.excess.empty()) return count.excess;
  return failure == 0 || damage == PacketDamage::kIsTolerated ? "" : "is damaged";
}

}  // namespace platform
