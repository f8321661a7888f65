// The one form in which the core library reports a failed check: logged once, and the code goes to the caller.
#pragma once

#include <cstring>
#include <string>

#include "ErrorCodes.h"
#include "GLogger.h"

// Logs "Error='...'  File='...'  Line=...  Expression='...'  Code='...'  " for the identifier of a subject area. The
// file is given from "core-agent/" on where it stands below such a folder.
void ReportFailedCheck(const std::string& identifier, TModuleErrorCode code, const char* file, int line,
                       const char* expression, GLogger::LoggingLevel level = GLogger::kError);

// Reports at a level, and returns the expression's code from the calling function if it is not 0.
#define RETURN_IF_ERROR_AT(identifier, level, expression)                                 \
  do {                                                                                    \
    const TModuleErrorCode checkedCode = (expression);                                    \
    if (checkedCode != CoreErrorCodes::kSuccess) {                                        \
      ReportFailedCheck(identifier, checkedCode, __FILE__, __LINE__, #expression, level); \
      return checkedCode;                                                                 \
    }                                                                                     \
  } while (false)

// Returns a code that was reported where it arose.
#define PASS_ON_ERROR(expression)                                  \
  do {                                                             \
    const TModuleErrorCode passedCode = (expression);              \
    if (passedCode != CoreErrorCodes::kSuccess) return passedCode; \
  } while (false)

// Reports at a level, and returns the code, if the condition, a test that must be false, is true.
#define RETURN_IF_AT(identifier, level, condition, code)                          \
  do {                                                                            \
    if (condition) {                                                              \
      ReportFailedCheck(identifier, code, __FILE__, __LINE__, #condition, level); \
      return code;                                                                \
    }                                                                             \
  } while (false)

// The same at the usual level. Written out: passed on through another macro, the text would have its own macros
// expanded.
#define RETURN_IF_ERROR(identifier, expression)                                    \
  do {                                                                             \
    const TModuleErrorCode checkedCode = (expression);                             \
    if (checkedCode != CoreErrorCodes::kSuccess) {                                 \
      ReportFailedCheck(identifier, checkedCode, __FILE__, __LINE__, #expression); \
      return checkedCode;                                                          \
    }                                                                              \
  } while (false)

#define RETURN_IF(identifier, condition, code)                             \
  do {                                                                     \
    if (condition) {                                                       \
      ReportFailedCheck(identifier, code, __FILE__, __LINE__, #condition); \
      return code;                                                         \
    }                                                                      \
  } while (false)
