// The one form in which the core library reports a failed check: logged once, and the code goes to the caller.
#pragma once

#include <string>

#include "ErrorCodes.h"
#include "GLogger.h"

// Logs "Error='...'  File='...'  Line=...  Expression='...'  Code='...'  " for the identifier of a subject area, with the
// code's name, the source's path as the compiler was given it (from core-agent/ on it is always the same) and the code as
// a decimal number.
void ReportFailedCheck(const std::string& identifier, TModuleErrorCode code, const char* file, int line,
                       const char* expression, GLogger::LoggingLevel level = GLogger::kError);

// Reports the expression's code and returns it from the calling function if it is not 0.
#define RETURN_IF_ERROR(identifier, expression) \
  RETURN_REPORTED_CODE(identifier, GLogger::kError, expression, #expression)
// The same at another level.
#define RETURN_IF_ERROR_AT(identifier, level, expression) \
  RETURN_REPORTED_CODE(identifier, level, expression, #expression)

// Reports and returns the code if the condition, a test that must be false, is true.
#define RETURN_IF(identifier, condition, code) RETURN_IF_AS(identifier, GLogger::kError, condition, code, #condition)
#define RETURN_IF_AT(identifier, level, condition, code) RETURN_IF_AS(identifier, level, condition, code, #condition)

// Returns a code that was reported where it arose.
#define PASS_ON_ERROR(expression)                                  \
  do {                                                             \
    const TModuleErrorCode passedCode = (expression);              \
    if (passedCode != CoreErrorCodes::kSuccess) return passedCode; \
  } while (false)

// For the macros above, which take an expression's text before its own macros are expanded.
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
