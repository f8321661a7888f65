// How the exported functions ask the agent.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "frameworks/VelorantPluginInterface/Facade.h"
#include "frameworks/VelorantPluginInterface/Guarded.h"
#include "frameworks/VelorantPluginInterface/ResultCodes.h"

namespace plugin_interface {

CallResult CallAgent(PluginInterface::FacadeHandle handle, const char* name, Json arguments = Json::object());

// A list of numbers as an argument. A null list is an empty one.
Json Numbers(uint32_t count, const uint32_t* numbers);

// Writes as many numbers as there is room for; how many, as the result. A null list has no room. Throws
// BadAnswer.
uint32_t WriteNumbers(const Json& numbers, uint32_t* out, uint32_t capacity);

// The list that the agent gives one entry each for what was asked; kInvalidMessage if it is of another length; as above, BadAnswer
// if it is no list of numbers.
TModuleErrorCode WriteAnswers(const CallResult& reply, const char* key, uint32_t count, uint32_t* out);

// Asks for one number, "value" of the result. On a failure *out stays as it was.
TModuleErrorCode ReadNumber(PluginInterface::FacadeHandle handle, const char* name, Json arguments, int32_t* out);

// The text and its end, or kInvalidParam with nothing but an end if it does not fit.
TModuleErrorCode WriteText(std::string_view text, char* buffer, uint32_t size);

}  // namespace plugin_interface
