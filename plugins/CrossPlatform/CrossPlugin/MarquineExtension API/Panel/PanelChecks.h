// How the panel's code reports a failed step, and how it asks the agent. For the source files of the panel.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Bridge/VPILoader.h"
#include "FailedCheck.h"
#include "Services/DiagnosticLog.h"
#include "platform/Value.h"

inline constexpr const char* kPanelLogIdentifier = "Miscellaneous";

// If a step's code is not 0, logs the step as it stands in the source and returns the code. People search the log for
// these texts, so variables in steps keep their names.
#define PANEL_CHECK(expression) PANEL_CHECK_AS(expression, #expression)
#define PANEL_CHECK_AS(expression, text) RETURN_REPORTED_CODE(kPanelLogIdentifier, GLogger::kError, expression, text)
// The same for a function of the agent's table, without the handle, its first argument.
#define PANEL_CHECK_AGENT(function, ...)                                  \
  PANEL_CHECK_AS(AgentFunctions().pf##function(GetFacade(), __VA_ARGS__), \
                 "VPILoader::GetSharedInstance()->pf" #function           \
                 " (VPILoader::GetSharedInstance()->pfGetPluginFacadeInstance(), " #__VA_ARGS__ ")")

inline const VPILoader& AgentFunctions() { return *VPILoader::GetSharedInstance(); }

// Asks for a number of the agent's state. 0 if the agent fails, or if there is no library: a panel may connect when
// there is no agent, and an older library may lack the online state.
using AgentState = PluginInterface::TModuleErrorCode (*)(PluginInterface::FacadeHandle h, int32_t* out);
int32_t AskAgentFor(AgentState state);

// The text in UTF-8 up to a NUL, cut after a whole character to what fits into a buffer of 1,024 bytes.
std::string BoundedText(const platform::String& text);

// The font ID that is the key of a drawn name: decimal text, taken as a signed 32-bit number.
int32_t FontIDOf(std::string_view key);

// Traces the entry to a handler and its exit.
class PanelTrace : public TracedCall {
 public:
  explicit PanelTrace(const char* name) : TracedCall(name), mHandler(name) {}
  ~PanelTrace() { End("Exiting %s()", mHandler); }

 private:
  const char* mHandler;
};
