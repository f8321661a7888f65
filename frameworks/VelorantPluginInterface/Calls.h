// Helpers with which the exported functions call the agent.
#pragma once

#include <cstdint>
#include <string_view>

#include "frameworks/VelorantPluginInterface/Facade.h"
#include "frameworks/VelorantPluginInterface/Guarded.h"
#include "frameworks/VelorantPluginInterface/RecentFonts.h"
#include "frameworks/VelorantPluginInterface/ResultCodes.h"

namespace plugin_interface {

// For calls that change no font.
template <class Call>
Reply<Call> CallUnchanging(PluginInterface::FacadeHandle handle, const typename Call::Arguments& arguments = {}) {
  ResultCode code = kSuccess;
  const auto facade = FacadeOf(handle, code);
  return facade ? facade->Call<Call>(arguments) : Reply<Call>{code, {}};
}

template <class Call>
Reply<Call> CallAgent(PluginInterface::FacadeHandle handle, const typename Call::Arguments& arguments = {}) {
  RecentFonts::Shared().Forget();
  Reply<Call> reply = CallUnchanging<Call>(handle, arguments);
  RecentFonts::Shared().Forget();  // what another thread was told meanwhile
  return reply;
}

// True if the handle's agent is there: only then what it answered a moment ago can be used.
bool IsConnected(PluginInterface::FacadeHandle handle);

// Copies an array of numbers. A null array is an empty one.
Numbers NumbersOf(uint32_t count, const uint32_t* numbers);

// Writes as many numbers as there is room for and returns their number. A null array has no room.
uint32_t WriteNumbers(const Numbers& numbers, uint32_t* out, uint32_t capacity);

// Writes the agent's answers, one for each font. kInvalidMessage if their number is not `count`.
TModuleErrorCode WriteAnswers(const Numbers& answers, uint32_t count, uint32_t* out);

// Calls the agent and writes the "value" of the result. On failure *out is unchanged.
template <class Call>
TModuleErrorCode ReadValue(PluginInterface::FacadeHandle handle, const typename Call::Arguments& arguments,
                           int32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    const Reply<Call> reply = CallUnchanging<Call>(handle, arguments);
    if (reply.code == kSuccess) *out = static_cast<int32_t>(reply.result.value);
    return reply.code;
  });
}

// Writes the text and a NUL. kInvalidParam and an empty text if it does not fit.
TModuleErrorCode WriteText(std::string_view text, char* buffer, uint32_t size);

}  // namespace plugin_interface
