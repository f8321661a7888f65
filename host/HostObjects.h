// The objects behind the suites' opaque pointers. One set per process, because the suites' functions have no context.
// Main thread only.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>

#include "host/ActionValues.h"
#include "host/LiveObjects.h"
#include "host/ObjectTable.h"

namespace host {

struct BlockFree {
  void operator()(void* block) const { std::free(block); }
};

struct HostObjects {
  ObjectTable<host_sdk::ActionDescriptor, DescriptorData> descriptors;
  ObjectTable<host_sdk::ActionReference, ReferenceData> references;
  ObjectTable<host_sdk::ActionList, ListData> lists;
  ObjectTable<host_sdk::HandleBlock, AliasData> handles;
  ObjectTable<host_sdk::ZStringObject, std::string> strings;  // UTF-8
  // The plug-in uses blocks as memory, so their keys are addresses.
  std::unordered_map<void*, std::unique_ptr<void, BlockFree>> blocks;

  static HostObjects& Shared();
  // Frees everything that an unloaded plug-in left.
  void Clear();
};

}  // namespace host
