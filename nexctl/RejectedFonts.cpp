#include "nexctl/RejectedFonts.h"

#include <fnmatch.h>
#include <libxml/parser.h>

#include <cstring>
#include <memory>

#include "platform/Files.h"

namespace nexctl {

namespace {

struct FreeDocument {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

bool IsNamed(const xmlNode* node, const char* name) {
  return node->type == XML_ELEMENT_NODE && std::strcmp(reinterpret_cast<const char*>(node->name), name) == 0;
}

std::string TextOf(xmlNode* node) {
  const std::unique_ptr<xmlChar, void (*)(void*)> text(xmlNodeGetContent(node), xmlFree);
  std::string words = text ? reinterpret_cast<const char*>(text.get()) : "";
  const size_t first = words.find_first_not_of(" \t\r\n"), last = words.find_last_not_of(" \t\r\n");
  return first == std::string::npos ? "" : words.substr(first, last + 1 - first);
}

// <fontconfig><selectfont><rejectfont><glob>/folder/*</glob></rejectfont></selectfont></fontconfig>
void TakeRules(xmlNode* root, const std::string& file, std::vector<RejectRule>& rules) {
  for (xmlNode* select = root->children; select; select = select->next) {
    if (!IsNamed(select, "selectfont")) continue;
    for (xmlNode* reject = select->children; reject; reject = reject->next) {
      if (!IsNamed(reject, "rejectfont")) continue;
      for (xmlNode* rule = reject->children; rule; rule = rule->next) {
        if (IsNamed(rule, "glob")) rules.push_back({file, TextOf(rule)});
        if (IsNamed(rule, "pattern")) rules.push_back({file, ""});
      }
    }
  }
}

}  // namespace

std::vector<RejectRule> RejectRulesIn(const std::vector<std::string>& configFiles) {
  std::vector<RejectRule> rules;
  for (const std::string& file : configFiles) {
    constexpr int kQuietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    // Folders are listed, too.
    std::string text;
    if (platform::FolderExists(file) || platform::ReadFile(file, text)) continue;
    const std::unique_ptr<xmlDoc, FreeDocument> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), file.c_str(), nullptr, kQuietly));
    xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root) TakeRules(root, file, rules);
  }
  return rules;
}

bool Rejects(const RejectRule& rule, const std::string& folder) {
  // A file as the agent links it. fontconfig's globs match slashes, too.
  return !rule.glob.empty() && fnmatch(rule.glob.c_str(), (folder + "/0/1.otf").c_str(), 0) == 0;
}

}  // namespace nexctl
