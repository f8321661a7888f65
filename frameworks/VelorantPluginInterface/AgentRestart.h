// Starts the agent again after it has ended by itself.
//
// The library's user starts a missing agent only for calls that change something, and does nothing more once it has
// seen that none runs. Without this, a document that is opened just after the agent has crashed would open without its
// fonts.
#pragma once

#include <memory>

#include "frameworks/VelorantPluginInterface/Calls.h"

namespace plugin_interface {

// Call after a call has returned an agent-gone code, or if no agent's process runs. If this process was connected to an
// agent that did not announce its end, waits for a new one, and starts it if no other program has. Returns the facade
// through which it answers; null if there is no agent, or if it was started too often lately. Thread-safe.
std::shared_ptr<Facade> ReturnToAgent();

// CallUnchanging that repeats the call once if the agent has ended.
template <class Call>
Reply<Call> AskAgent(PluginInterface::FacadeHandle handle, const typename Call::Arguments& arguments = {}) {
  Reply<Call> reply = CallUnchanging<Call>(handle, arguments);
  if (!IsAgentGone(reply.code)) return reply;
  const auto facade = ReturnToAgent();
  return facade ? facade->Call<Call>(arguments) : reply;
}
// Call at an orderly end: what the next session of this process needs is not counted with what this one needed.
void ForgetRestarts();

}  // namespace plugin_interface
