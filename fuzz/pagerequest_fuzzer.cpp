// Any bytes as a request to the server of the panel's page: nothing is given without the token, and no name leaves its
// folder. Any bytes as a message of the plug-in make no file readable that the message does not name. Any bytes as a
// request to the host get an answer under their number, or none.
#include <nlohmann/json.hpp>
#include <string>

#include "Check.h"
#include "Input.h"
#include "host/panel/HostRequests.h"
#include "host/panel/ReadableFiles.h"
#include "host/panel/RequestCheck.h"

namespace {

std::string_view TakeLine(std::string_view& text) {
  const size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == text.npos ? text.size() : end + 1);
  return line;
}

// Has a font with an even number only.
class Fonts : public panel::FontSource {
 public:
  std::optional<std::vector<Part>> Parts() override { return {{{"set", 3, "\xff\""}}}; }
  std::optional<std::vector<Kind>> Kinds() override { return {{{"TrueType", {2, 4}}}}; }
  std::optional<Deactivation> DeactivateFamily(uint32_t fontID) override {
    if (fontID % 2 != 0) return std::nullopt;
    return Deactivation{{fontID}, {{2, "document", "a.psd"}}};
  }
};

void CheckHostRequest(const std::string& text) {
  Fonts fonts;
  const std::string answer = panel::AnswerHostRequest(fonts, text);
  if (answer.empty()) return;
  const auto json = nlohmann::json::parse(answer);
  CHECK(json["request"] == nlohmann::json::parse(text)["request"]);
  CHECK(json.size() >= 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text = BytesOf(data, size);
  CheckHostRequest(std::string(text));
  panel::ReadableFiles files("/previews");
  files.Learn(std::string(text));
  if (text.find("/etc/passwd") == text.npos && text.find('\\') == text.npos) CHECK(!files.Read("/etc/passwd"));

  panel::RequestParts request;
  request.method = TakeLine(text);
  request.target = TakeLine(text);
  request.host = TakeLine(text);
  request.origin = TakeLine(text);
  request.isUpgrade = !text.empty();
  const panel::Decision decision = panel::CheckRequest(request, {"token", 80});
  const bool isRefused = decision.wanted == panel::Wanted::kNothing;
  CHECK((decision.reason != nullptr) == isRefused);
  if (isRefused) return 0;
  CHECK(request.target.starts_with("/token/"));
  CHECK(request.host == "127.0.0.1:80");
  CHECK(decision.name.find('\0') == decision.name.npos);
  CHECK((decision.name + "/").find("/../") == std::string::npos);
  if (decision.wanted == panel::Wanted::kPageFile) CHECK(decision.name.find('/') == decision.name.npos);
  if (decision.wanted == panel::Wanted::kFile) CHECK(decision.name.starts_with("/"));
  return 0;
}
