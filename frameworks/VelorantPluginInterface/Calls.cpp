#include "frameworks/VelorantPluginInterface/Calls.h"

#include <algorithm>
#include <cstring>

namespace plugin_interface {

CallResult CallAgent(PluginInterface::FacadeHandle handle, const char* name, Json arguments) {
  uint32_t code = kSuccess;
  const auto facade = FacadeOf(handle, code);
  return facade ? facade->Call(name, std::move(arguments)) : CallResult{code};
}

Json Numbers(uint32_t count, const uint32_t* numbers) {
  Json list = Json::array();
  for (uint32_t i = 0; numbers && i < count; ++i) list.push_back(numbers[i]);
  return list;
}

uint32_t WriteNumbers(const Json& numbers, uint32_t* out, uint32_t capacity) {
  const auto list = NumbersOfJson(numbers);
  const size_t count = out ? std::min<size_t>(list.size(), capacity) : 0;
  std::copy_n(list.begin(), count, out);
  return static_cast<uint32_t>(count);
}

TModuleErrorCode WriteAnswers(const CallResult& reply, const char* key, uint32_t count, uint32_t* out) {
  if (reply.code != kSuccess) return reply.code;
  const Json& answers = reply.result.at(key);
  if (answers.size() != count) return kInvalidMessage;
  WriteNumbers(answers, out, count);
  return kSuccess;
}

TModuleErrorCode ReadNumber(PluginInterface::FacadeHandle handle, const char* name, Json arguments, int32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(handle, name, std::move(arguments));
    if (reply.code == kSuccess) *out = static_cast<int32_t>(NumberOfJson(reply.result.at("value")));
    return reply.code;
  });
}

TModuleErrorCode WriteText(std::string_view text, char* buffer, uint32_t size) {
  if (!buffer) return kNullPointer;
  if (size > 0) buffer[0] = '\0';
  if (text.size() >= size) return kInvalidParam;
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return kSuccess;
}

}  // namespace plugin_interface
