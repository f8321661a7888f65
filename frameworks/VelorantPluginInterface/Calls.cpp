#include "frameworks/VelorantPluginInterface/Calls.h"

#include <algorithm>
#include <cstring>

namespace plugin_interface {

bool IsConnected(PluginInterface::FacadeHandle handle) {
  ResultCode code = kSuccess;
  const auto facade = FacadeOf(handle, code);
  return facade && facade->IsConnected();
}

Numbers NumbersOf(uint32_t count, const uint32_t* numbers) {
  return numbers ? Numbers(numbers, numbers + count) : Numbers();
}

uint32_t WriteNumbers(const Numbers& numbers, uint32_t* out, uint32_t capacity) {
  const size_t count = out ? std::min<size_t>(numbers.size(), capacity) : 0;
  std::copy_n(numbers.begin(), count, out);
  return static_cast<uint32_t>(count);
}

TModuleErrorCode WriteAnswers(const Numbers& answers, uint32_t count, uint32_t* out) {
  if (answers.size() != count) return kInvalidMessage;
  WriteNumbers(answers, out, count);
  return kSuccess;
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
