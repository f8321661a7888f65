#include "host/panel/HostRequests.h"

#include <nlohmann/json.hpp>

namespace panel {

namespace {

using Json = nlohmann::json;

// Both are known to the page.
constexpr const char* kMalformed = "malformed";
constexpr const char* kFailed = "failed";

std::optional<uint32_t> NumberIn(const Json& json, const char* key) {
  const auto found = json.find(key);
  if (found == json.end() || !found->is_number_unsigned() || found->get<uint64_t>() > UINT32_MAX) return std::nullopt;
  return found->get<uint32_t>();
}

// The handlers add to the answer, and return null or the word of a problem.

const char* GetParts(FontSource& fonts, const Json&, Json& answer) {
  const auto parts = fonts.Parts();
  if (!parts) return kFailed;
  Json& list = answer["parts"] = Json::array();
  for (const auto& [kind, number, name] : *parts) list.push_back({{"kind", kind}, {"number", number}, {"name", name}});
  return nullptr;
}

const char* GetKinds(FontSource& fonts, const Json&, Json& answer) {
  const auto kinds = fonts.Kinds();
  if (!kinds) return kFailed;
  Json& list = answer["kinds"] = Json::array();
  for (const auto& [kind, fontIDs] : *kinds) list.push_back({{"kind", kind}, {"fontIDs", fontIDs}});
  return nullptr;
}

const char* DeactivateFamily(FontSource& fonts, const Json& request, Json& answer) {
  const auto fontID = NumberIn(request, "fontID");
  if (!fontID) return kMalformed;
  const auto done = fonts.DeactivateFamily(*fontID);
  if (!done) return kFailed;
  answer["inactive"] = done->inactive;
  Json& list = answer["kept"] = Json::array();
  for (const auto& [id, why, document] : done->kept) {
    list.push_back({{"fontID", id}, {"why", why}, {"document", document}});
  }
  return nullptr;
}

constexpr struct {
  const char* call;
  const char* (*handle)(FontSource& fonts, const Json& request, Json& answer);
} kHandlers[] = {{"getParts", GetParts}, {"getKinds", GetKinds}, {"deactivateFamily", DeactivateFamily}};

const char* Handle(FontSource& fonts, const Json& request, Json& answer) {
  const auto call = request.find("call");
  if (call == request.end()) return kMalformed;
  for (const auto& handler : kHandlers) {
    if (*call == handler.call) return handler.handle(fonts, request, answer);
  }
  return kMalformed;
}

}  // namespace

std::string AnswerHostRequest(FontSource& fonts, const std::string& text) {
  const Json request = Json::parse(text, nullptr, false);
  const auto number = request.is_object() ? NumberIn(request, "request") : std::nullopt;
  if (!number) return "";
  Json answer = {{"request", *number}};
  if (const char* problem = Handle(fonts, request, answer)) answer["problem"] = problem;
  // Names come from files.
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace panel
