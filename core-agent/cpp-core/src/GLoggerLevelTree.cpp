// Sets the logger's levels from a tree. Separate from GLogger.cpp, because trees report to the logger.
#include "GKVTree.h"
#include "GLogger.h"

void GLogger::SetLoggingLevelsFromKVTree(const GKVTree& levels) {
  for (const std::string& key : levels.GetKeys()) {
    const GValue* value = levels.GetValuePtrForKey(key);
    std::string text;
    if (value->GetValueType() != GValue::kValueType_string || value->GetValue(text) != CoreErrorCodes::kSuccess)
      continue;
    const LoggingLevel level = StringToLevel(text);
    if (level != kInvalid) SetLoggingLevelForIdentifier(key, level);
  }
}
