#include "photoshop/PSConstA.h"

#include <string_view>

#include "host/include/HostTerminology.h"
#include "photoshop/HostObjects.h"

using namespace host_sdk;

namespace {

constexpr FourCharCode kLastRuntimeKey = 0x2020201F;  // below every code of four printable characters
constexpr uint32_t kLongestKeyName = 256;

#define NAMED_CONSTANT(name, code) {code, #name},
constexpr PSConstant kConstants[] = {HOST_TERMINOLOGY(NAMED_CONSTANT)};
#undef NAMED_CONSTANT

}  // namespace

const std::span<const PSConstant> PSConstA = kConstants;

std::string KeyName(FourCharCode key) {
  char runtimeName[kLongestKeyName];
  if (key <= kLastRuntimeKey && sPSActionControl->TypeIDToStringID(key, runtimeName, sizeof runtimeName) == kNoErr) {
    return runtimeName;
  }
  // Other names of the same code belong to classes or types.
  for (const PSConstant& constant : PSConstA) {
    if (constant.code == key && std::string_view(constant.name).find("key") != std::string_view::npos) {
      return constant.name;
    }
  }
  return "'" + FourCharTypeToStdString(key) + "'";
}
