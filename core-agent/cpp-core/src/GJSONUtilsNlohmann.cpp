// Parses into a value of the other JSON library; separate, because its header is large.
#include <nlohmann/json.hpp>

#include "GJSONUtils.h"

TModuleErrorCode GJSONUtils::Parse(const std::string& text, nlohmann::json& value) {
  nlohmann::json parsed = nlohmann::json::parse(text, nullptr, false);
  RETURN_IF("Miscellaneous", parsed.is_discarded(), CoreErrorCodes::kInvalidParam);
  value = std::move(parsed);
  return CoreErrorCodes::kSuccess;
}
