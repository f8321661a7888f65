// How the core library reports a failed check: it logs the check once and returns the code to the caller.
#pragma once

#include <string>

#include "ErrorCodes.h"
#include "GLogger.h"

// Logs "Error='...'  File='...'  Line=...  Expression='...'  Code='...'  " under the identifier of a subject area: the
// code's name, the source path as the compiler got it (the part from core-agent/ on is always the same), and the code
// as a decimal number.
void ReportFailedCheck(const std::string& identifier, TModuleErrorCode code, const char* file, int line,
                       const char* expression, GLogger::LoggingLevel level = GLogger::kError);

// If the expression's code is not 0, reports it and returns it from the calling function.
#define RETURN_IF_ERROR(identifier, expression) \
  RETURN_REPORTED_CODE(identifier, GLogger::kError, expression, #expression)
// The same at another log level.
#define RETURN_IF_ERROR_AT(identifier, level, expression) \
  RETURN_REPORTED_CODE(identifier, level, expression, #expression)

// Reports and returns the code if the condition is true.
#define RETURN_IF(identifier, condition, code) RETURN_IF_AS(identifier, GLogger::kError, condition, code, #condition)
#define RETURN_IF_AT(identifier, level, condition, code) RETURN_IF_AS(identifier, level, condition, code, #condition)

// Returns a nonzero code without reporting it, because it was reported where it occurred.
#define PASS_ON_ERROR(expression)                                  \
  do {                                                             \
    const TModuleErrorCode passedCode = (expression);              \
    if (passedCode != CoreErrorCodes::kSuccess) return passedCode; \
  } while (false)

// Used by the macros above, which take an expression's text before macros in it are expanded.
#define RETURN_IF_AS(identifier, level, condition, code, text) \
  RETURN_REPORTED_CODE(identifier, level, (condition) ? (code) : CoreErrorCodes::kSuccess, text)
#define RETURN_REPORTED_CODE(identifier, level, result, text)                      \
  do {                                                                             \
    const TModuleErrorCode checkedCode = (result);                                 \
    if (checkedCode != CoreErrorCodes::kSuccess) {                                 \
      ReportFailedCheck(identifier, checkedCode, __FILE__, __LINE__, text, level); \
      return checkedCode;                                                          \
    }                                                                              \
  } while (false)
