// The basic suite, which acquires and releases suites, and the suite of memory blocks.
#include <cstring>
#include <vector>

#include "host/HostObjects.h"
#include "host/Suites.h"

using namespace host_sdk;

namespace host {

namespace {

constexpr size_t kLargestBlock = INT32_MAX;

struct Suite {
  const char* name;
  int32_t version;
  const void* table;
  size_t acquired = 0;
};

std::vector<Suite>& Suites() {
  static std::vector<Suite> sSuites = {
      {kSPBlocksSuite, kSPBlocksSuiteVersion, &BlocksSuite()},
      {kPSActionControlSuite, kPSActionControlSuiteVersion, &ActionControlSuite()},
      {kPSActionDescriptorSuite, kPSActionDescriptorSuiteVersion, &ActionDescriptorSuite()},
      {kPSActionReferenceSuite, kPSActionReferenceSuiteVersion, &ActionReferenceSuite()},
      {kPSActionListSuite, kPSActionListSuiteVersion, &ActionListSuite()},
      {kPSAliasSuite, kPSAliasSuiteVersion, &AliasSuite()},
      {kPSHandleSuite, kPSHandleSuiteVersion, &HandleSuite()},
      {kASZStringSuite, kASZStringSuiteVersion, &ZStringSuite()},
      {kASZStringSuite, kASZStringSuite2Version, &ZStringSuite2()},
  };
  return sSuites;
}

Suite* FindSuite(const char* name, int32_t version) {
  for (Suite& suite : Suites()) {
    if (std::strcmp(suite.name, name) == 0 && suite.version == version) return &suite;
  }
  return nullptr;
}

SPErr AcquireSuite(const char* name, int32_t version, const void** table) {
  if (!name || !table) return kBadParameters;
  Suite* suite = FindSuite(name, version);
  if (!suite) return kSuiteNotFound;
  ++suite->acquired;
  *table = suite->table;
  return kNoErr;
}

SPErr ReleaseSuite(const char* name, int32_t version) {
  if (!name) return kBadParameters;
  Suite* suite = FindSuite(name, version);
  if (!suite) return kSuiteNotFound;
  if (suite->acquired == 0) return kBadParameters;
  --suite->acquired;
  return kNoErr;
}

int32_t IsEqual(const char* a, const char* b) { return a && b && std::strcmp(a, b) == 0; }

SPErr AllocateBlock(size_t size, const char*, void** block) {
  if (!block) return kBadParameters;
  if (size > kLargestBlock) return kOutOfMemory;
  std::unique_ptr<void, BlockFree> memory(std::malloc(size > 0 ? size : 1));
  if (!memory) return kOutOfMemory;
  *block = memory.get();
  HostObjects::Shared().blocks.emplace(*block, std::move(memory));
  return kNoErr;
}

SPErr FreeBlock(void* block) { return HostObjects::Shared().blocks.erase(block) != 0 ? kNoErr : kBadParameters; }

}  // namespace

const SPBasicSuite& BasicSuite() {
  static constexpr SPBasicSuite sSuite = {AcquireSuite, ReleaseSuite, IsEqual};
  return sSuite;
}

const SPBlocksSuite& BlocksSuite() {
  static constexpr SPBlocksSuite sSuite = {AllocateBlock, FreeBlock};
  return sSuite;
}

size_t AcquiredSuites() {
  size_t count = 0;
  for (const Suite& suite : Suites()) count += suite.acquired;
  return count;
}

void ForgetAcquisitions() {
  for (Suite& suite : Suites()) suite.acquired = 0;
}

}  // namespace host
