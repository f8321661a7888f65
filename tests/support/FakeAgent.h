// The agent's table of functions with fonts in memory: it records every call and can fail in any of them.
//
// The table is made from the published list, so it has every function. Those that FakeAgentAnswers.h does not implement
// succeed and do not change their out parameters.
#pragma once

#include <type_traits>

#include "support/FakeAgentAnswers.h"
#include "support/FakeAgentState.h"

namespace fakes {

template <AgentFunction function, class Signature>
struct AgentThunk;

template <AgentFunction function, class Result, class... Arguments>
struct AgentThunk<function, Result(Arguments...)> {
  static Result Call(Arguments... arguments) {
    constexpr bool kNeedsAgent = AgentAnswers::NeedsAgent(function);
    const uint32_t code = FakeAgent::Current().Enter(function, AgentAnswers::NameOf(function), kNeedsAgent);
    if (code != 0 && std::is_same_v<Result, PluginInterface::TModuleErrorCode>) return static_cast<Result>(code);
    using Tag = std::integral_constant<AgentFunction, function>;
    if constexpr (requires { AgentAnswers::Answer(Tag(), arguments...); }) {
      return AgentAnswers::Answer(Tag(), arguments...);
    } else {
      return Result();
    }
  }
};

inline void InstallFakeAgentTable() {
  VPILoader* const table = VPILoader::UseEmptyTableForTesting();
  table->SetMissingFunctionsForTesting(0);
#define FAKE_MEMBER(name, result, parameters) \
  table->pf##name = &AgentThunk<AgentFunction::name, result parameters>::Call;
  PLUGIN_INTERFACE_FUNCTIONS(FAKE_MEMBER)
#undef FAKE_MEMBER
}

}  // namespace fakes
