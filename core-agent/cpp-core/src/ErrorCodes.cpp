#include "ErrorCodes.h"

#include <atomic>
#include <map>
#include <mutex>

namespace {

struct Row {
  TModuleErrorCode code;
  const char* name;
};

constexpr Row kRows[] = {
#include "ErrorCodeTable.inc"
};

using NamesByCode = std::map<TModuleErrorCode, std::string>;
using CodesByName = std::map<std::string, TModuleErrorCode>;

// Built on first use under a mutex of its own, tested before and after taking it, read without it and never freed.
const NamesByCode& GetNamesByCode() {
  static std::mutex sMutex;
  static std::atomic<const NamesByCode*> sMap{nullptr};
  if (const NamesByCode* map = sMap.load(std::memory_order_acquire)) return *map;
  const std::lock_guard lock(sMutex);
  if (const NamesByCode* map = sMap.load(std::memory_order_relaxed)) return *map;
  auto* map = new NamesByCode;
  for (const Row& row : kRows) map->emplace(row.code, row.name);
  sMap.store(map, std::memory_order_release);
  return *map;
}

const CodesByName& GetCodesByName() {
  static std::mutex sMutex;
  static std::atomic<const CodesByName*> sMap{nullptr};
  if (const CodesByName* map = sMap.load(std::memory_order_acquire)) return *map;
  const std::lock_guard lock(sMutex);
  if (const CodesByName* map = sMap.load(std::memory_order_relaxed)) return *map;
  auto* map = new CodesByName;
  for (const Row& row : kRows) map->emplace(row.name, row.code);
  sMap.store(map, std::memory_order_release);
  return *map;
}

}  // namespace

std::string GetNameForErrorCode(TModuleErrorCode code) {
  const auto found = GetNamesByCode().find(code);
  return found == GetNamesByCode().end() ? "Unknown error code" : found->second;
}

TModuleErrorCode GetErrorCodeForName(const std::string& name) {
  const auto found = GetCodesByName().find(name);
  return found == GetCodesByName().end() ? CoreErrorCodes::kUnknownError : found->second;
}
