#include "Bridge/CoreAgentSupport.h"

#include "Identification/FontKeys.h"
#include "XCore/ECFExtensions/XCFUtils.h"

bool IsAgentGone(TModuleErrorCode code) {
  constexpr TModuleErrorCode kGoneWithoutName = 0x02005001;
  return code == PluginInterface::kAgentShutdownCode || code == kGoneWithoutName ||
         code == PluginInterface::kServiceUnavailableCode;
}

std::string CallStringGetter(StringGetter getter, char* buffer, uint32_t size) {
  char own[256] = {};
  if (!buffer) {
    buffer = own;
    size = sizeof own;
  }
  getter(buffer, size);
  return std::string(buffer, strnlen(buffer, size));
}

std::vector<uint32_t> CreateArrayFromVector(const std::vector<uint32_t>& values) { return values; }

void AppendArrayToVector(const uint32_t* values, uint32_t count, std::vector<uint64_t>& out) {
  out.insert(out.end(), values, values + count);
}

void AppendArrayToTUInt32Vector(const uint32_t* values, uint32_t count, std::vector<uint32_t>& out) {
  out.insert(out.end(), values, values + count);
}

long WorkgroupTypeOf(const platform::Dictionary& workgroup) {
  if (!workgroup.Contains(GlyphsureSupport::kGS_WorkgroupTypeKey)) return -1;
  return XCFUtils::GetLongFromDictString(workgroup, GlyphsureSupport::kGS_WorkgroupTypeKey);
}

double& LastCoreAgentCheckTime() {
  static double lastCoreAgentCheckTime = 0;
  return lastCoreAgentCheckTime;
}

void ResetAgentCheckTimeForTesting() { LastCoreAgentCheckTime() = 0; }

std::vector<uint32_t> GetFontIDsFromFontInfoArray(const platform::Array& fonts, bool skipSystem) {
  std::vector<uint32_t> ids;
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const platform::Dictionary record(fonts.At(i));
    if (skipSystem && XCFUtils::GetLongFromDictString(record, GlyphsureSupport::kGS_IsSystemKey) != 0) continue;
    const auto id = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, GlyphsureSupport::kGS_DatabaseIDKey));
    if (id != 0) ids.push_back(id);
  }
  return ids;
}
