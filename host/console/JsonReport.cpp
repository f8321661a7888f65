// The report as one JSON object per line.
#include <cstdio>
#include <nlohmann/json.hpp>

#include "host/console/Report.h"
#include "platform/PlainText.h"

namespace console {

namespace {

using Json = nlohmann::ordered_json;

// Replaces malformed UTF-8 in paths, so that every line stays valid.
void Write(const Json& object) {
  const std::string line = object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

class JsonReport : public Report {
 public:
  void Note(const std::string& file, const std::string& line) override {
    std::fprintf(stderr, "%s: %s\n", platform::OneLine(file).c_str(), platform::OneLine(line).c_str());
  }
  void Listing(const std::vector<std::string>& lines) override {
    for (const std::string& line : lines) std::fprintf(stderr, "%s\n", platform::OneLine(line).c_str());
  }
  void Finish() override {}

 private:
  void WriteOpened(const OpenedReport& opened) override {
    Json activated = Json::array();
    for (const ActivatedFont& font : opened.activated) {
      activated.push_back({{"name", font.name}, {"file", font.file}, {"why", font.why}});
    }
    Json object = {{"event", "opened"},       {"file", opened.file},    {"named", opened.named},
                   {"active", opened.active}, {"activated", activated}, {"missing", opened.missing}};
    if (!opened.readers.empty()) object["readers"] = opened.readers;
    Write(object);
  }
  void WriteSaving(const std::string& file, const std::vector<std::string>& atRisk) override {
    Write({{"event", "saving"}, {"file", file}, {"atRisk", atRisk}});
  }
  void WriteSaved(const std::string& file, const std::vector<std::string>& slug,
                  const std::vector<std::string>& lost) override {
    Write({{"event", "saved"}, {"file", file}, {"slug", slug}, {"lost", lost}});
  }
  void WriteClosed(const std::string& file, const std::vector<std::string>& deactivated) override {
    Write({{"event", "closed"}, {"file", file}, {"deactivated", deactivated}});
  }
  void WriteError(const std::string& file, const std::string& message) override {
    Write({{"event", "error"}, {"file", file}, {"message", message}});
  }
};

}  // namespace

std::unique_ptr<Report> MakeJsonReport() { return std::make_unique<JsonReport>(); }

}  // namespace console
