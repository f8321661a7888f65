// The part of the diagnostic log that goes through the agent's library.
#include <cstdio>
#include <ctime>
#include <string>

#include "Bridge/VPILoader.h"
#include "Services/DiagnosticLog.h"
#include "platform/Clock.h"

namespace {
bool sLoggingStarted = false;
}

void InitLogging(const char* logName) {
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (!table->pfBeginLogging) return;
  table->pfBeginLogging(GetFacade(), logName);
  const std::time_t now = static_cast<std::time_t>(platform::Clock::WholeSeconds());
  const std::string header = std::string("\n=======\n") + std::ctime(&now) + "=======\n";
  if (table->pfLog) table->pfLog(GetFacade(), header.c_str());
}

void StartLogging() { sLoggingStarted = true; }
void StopLogging() { sLoggingStarted = false; }

void OutputSimpleDebugString(const char* text) {
  std::printf("%s", text);
  if (!sLoggingStarted) return;
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (table->pfLog) table->pfLog(GetFacade(), text);
}
