#include "frameworks/VelorantPluginInterface/Values.h"

#include <charconv>

namespace plugin_interface {

using platform::Array;
using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;

Value ValueOfJson(const nlohmann::json& json) {
  switch (json.type()) {
    case nlohmann::json::value_t::string: return String::FromUTF8(json.get_ref<const std::string&>());
    case nlohmann::json::value_t::boolean: return Boolean::From(json.get<bool>());
    case nlohmann::json::value_t::number_integer:
    case nlohmann::json::value_t::number_unsigned: return Number::FromInteger(json.get<int64_t>());
    case nlohmann::json::value_t::number_float: return Number::FromReal(json.get<double>());
    case nlohmann::json::value_t::array: {
      Array array = Array::Create();
      for (const auto& entry : json) array.Append(ValueOfJson(entry));
      return array;
    }
    case nlohmann::json::value_t::object: {
      Dictionary dictionary = Dictionary::Create();
      for (const auto& [key, entry] : json.items()) dictionary.Set(key, ValueOfJson(entry));
      return dictionary;
    }
    default: return Value();
  }
}

Dictionary DictionaryOf(const agent_protocol::Record& record) {
  Dictionary dictionary = Dictionary::Create();
  for (const auto& [key, text] : record) dictionary.Set(key, text);
  return dictionary;
}

Array ArrayOf(const std::vector<agent_protocol::Record>& records) {
  Array array = Array::Create();
  for (const agent_protocol::Record& record : records) array.Append(DictionaryOf(record));
  return array;
}

std::optional<uint32_t> NumberInText(const Dictionary& dictionary, std::string_view key) {
  const String text = dictionary.GetString(key);
  const std::string_view digits = text.View();
  uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

}  // namespace plugin_interface
