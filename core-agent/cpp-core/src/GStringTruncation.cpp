// The function of GStringUtils that reports a failed check. Separate, because the logger, which receives the report,
// uses the others.
#include "FailedCheck.h"
#include "GStringUtils.h"
#include "platform/TextEncoding.h"

TModuleErrorCode GStringUtils::OSTruncateUTF8String(std::string& text, size_t maxBytes) {
  if (!platform::IsValidUTF8(text)) {
    ReportFailedCheck("Miscellaneous", CoreErrorCodes::kNullPointer, __FILE__, __LINE__, "(nativeString) == nullptr");
    return CoreErrorCodes::kNullPointer;
  }
  if (text.size() <= maxBytes) return CoreErrorCodes::kSuccess;
  size_t end = maxBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  text.resize(end);
  return CoreErrorCodes::kSuccess;
}
