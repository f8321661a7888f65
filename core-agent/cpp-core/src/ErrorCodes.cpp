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

// The table in one direction, created on first use by double-checked locking. Read without a lock afterwards; never
// freed.
template <class Map, auto Key, auto Value>
const Map& GetRowsAs() {
  static std::mutex sMutex;
  static std::atomic<const Map*> sMap{nullptr};
  if (const Map* map = sMap.load(std::memory_order_acquire)) return *map;
  const std::lock_guard lock(sMutex);
  if (const Map* map = sMap.load(std::memory_order_relaxed)) return *map;
  auto* map = new Map;
  for (const Row& row : kRows) map->emplace(row.*Key, row.*Value);
  sMap.store(map, std::memory_order_release);
  return *map;
}

}  // namespace

std::string GetNameForErrorCode(TModuleErrorCode code) {
  const auto& names = GetRowsAs<std::map<TModuleErrorCode, std::string>, &Row::code, &Row::name>();
  const auto found = names.find(code);
  return found == names.end() ? "Unknown error code" : found->second;
}

TModuleErrorCode GetErrorCodeForName(const std::string& name) {
  const auto& codes = GetRowsAs<std::map<std::string, TModuleErrorCode>, &Row::name, &Row::code>();
  const auto found = codes.find(name);
  return found == codes.end() ? CoreErrorCodes::kUnknownError : found->second;
}
