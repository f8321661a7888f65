#include "host/HostObjects.h"

#include "host/Suites.h"

namespace host {

uintptr_t NextObjectNumber() {
  // Not aligned for a pointer and far below any mapping, so that dereferencing it by mistake crashes at once.
  static uintptr_t sNumber = 1;
  return sNumber += 2;
}

HostObjects& HostObjects::Shared() {
  static HostObjects sObjects;
  return sObjects;
}

void HostObjects::Clear() {
  descriptors.Clear();
  references.Clear();
  lists.Clear();
  handles.Clear();
  strings.Clear();
  blocks.clear();
}

LiveObjectCounts LiveObjects() {
  const HostObjects& objects = HostObjects::Shared();
  LiveObjectCounts counts;
  counts.descriptors = objects.descriptors.Count();
  counts.references = objects.references.Count();
  counts.lists = objects.lists.Count();
  counts.handles = objects.handles.Count();
  counts.strings = objects.strings.Count();
  counts.blocks = objects.blocks.size();
  counts.suites = AcquiredSuites();
  return counts;
}

}  // namespace host
