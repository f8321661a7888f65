#include "FailedCheck.h"

void ReportFailedCheck(const std::string& identifier, TModuleErrorCode code, const char* file, int line,
                       const char* expression, GLogger::LoggingLevel level) {
  GLogger::GetSharedInstance()->Log(identifier, level, "Error='%s'  File='%s'  Line=%d  Expression='%s'  Code='%u'  ",
                                    GetNameForErrorCode(code).c_str(), file, line, expression, code);
}
