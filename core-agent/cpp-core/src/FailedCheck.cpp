#include "FailedCheck.h"

void ReportFailedCheck(const std::string& identifier, TModuleErrorCode code, const char* file, int line,
                       const char* expression, GLogger::LoggingLevel level) {
  const char* project = std::strstr(file, "core-agent/");
  GLogger::GetSharedInstance()->Log(identifier, level, "Error='%s'  File='%s'  Line=%d  Expression='%s'  Code='%u'  ",
                                    GetNameForErrorCode(code).c_str(), project ? project : file, line, expression,
                                    code);
}
