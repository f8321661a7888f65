#include "with-fonts/Documents.h"

#include <libxml/uri.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <thread>

#include "Readers/Document/ReadableDocument.h"
#include "Readers/XMPFontMetadata.h"
#include "docfonts/FontCollector.h"
#include "docfonts/ReaderPool.h"
#include "platform/Files.h"

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

// Empty if the address is malformed, or names another machine.
std::string PathOfAddress(const std::string& address) {
  const std::unique_ptr<xmlURI, void (*)(xmlURI*)> uri(xmlParseURI(address.c_str()), xmlFreeURI);
  if (!uri || !uri->path) return "";
  const std::string machine = uri->server ? uri->server : "";
  return machine.empty() || machine == "localhost" ? uri->path : "";
}

}  // namespace

docfonts::Report ReadOne(const std::string& path) {
  static const int sStarted = InitializeGlyphsureXMP();
  docfonts::Report report = docfonts::CollectFonts(path);
  if (sStarted != 0) report.problems.push_back("the XMP library can't be started");
  return report;
}

docfonts::Report ReadKnown(const std::string& path) {
  ReadableDocument document(path);
  if (const std::error_code error = document.Open()) return {path, "", {}, {platform::DescribeError(error)}};
  return document.Kind() == EDocumentKind::kUnknown ? docfonts::Report{path, "", {}, {}} : ReadOne(path);
}

std::string PathOfArgument(const std::string& argument) {
  const std::string path = argument.starts_with("file:") ? PathOfAddress(argument) : argument;
  std::error_code error;
  if (path.empty() || !fs::is_regular_file(path, error)) return "";
  const std::string absolute = fs::absolute(path, error).lexically_normal().string();
  return error ? "" : absolute;
}

std::vector<Document> ReadDocuments(const std::vector<std::string>& arguments, bool isEachNamed) {
  std::vector<Document> documents;
  std::set<std::string> known;
  std::vector<Document> missing;
  for (const std::string& argument : arguments) {
    const std::string path = PathOfArgument(argument);
    if (path.empty()) {
      if (isEachNamed) missing.push_back({"", {argument, "", {}, {"there is no such document"}}});
    } else if (known.insert(path).second) {
      documents.push_back({path, {argument, "", {}, {}}});
    }
  }
  if (!documents.empty()) {
    size_t next = 0, done = 0;
    docfonts::ReaderPool pool(std::min<size_t>(documents.size(), std::max(1u, std::thread::hardware_concurrency())),
                              isEachNamed ? ReadOne : ReadKnown);
    pool.Run(
        [&]() -> std::optional<std::string> {
          if (next == documents.size()) return std::nullopt;
          return documents[next++].path;
        },
        [&](docfonts::Report report) {
          docfonts::Report& own = documents[done++].report;
          report.file = own.file;
          own = std::move(report);
          return true;
        });
  }
  if (!isEachNamed)
    std::erase_if(documents,
                  [](const Document& one) { return one.report.kind.empty() && one.report.problems.empty(); });
  documents.insert(documents.end(), missing.begin(), missing.end());
  return documents;
}

}  // namespace with_fonts
