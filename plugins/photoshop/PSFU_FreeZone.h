// Owns the objects that a walk meets and frees them all at the end of the scope. Main thread only.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "photoshop/HostObjects.h"

class PSFU_FreeZone {
 public:
  PSFU_FreeZone() = default;
  PSFU_FreeZone(const PSFU_FreeZone&) = delete;
  PSFU_FreeZone& operator=(const PSFU_FreeZone&) = delete;

  // Takes ownership and returns the raw pointer.
  host_sdk::PIActionDescriptor Add(ScopedDescriptor descriptor) {
    return mDescriptors.emplace_back(std::move(descriptor)).Get();
  }
  host_sdk::PIActionList Add(ScopedList list) { return mLists.emplace_back(std::move(list)).Get(); }
  host_sdk::PIActionReference Add(ScopedReference reference) {
    return mReferences.emplace_back(std::move(reference)).Get();
  }
  host_sdk::Handle Add(ScopedHandle alias) { return mAliases.emplace_back(std::move(alias)).Get(); }
  char* Add(std::unique_ptr<char[]> array) { return mArrays.emplace_back(std::move(array)).get(); }

 private:
  std::vector<ScopedDescriptor> mDescriptors;
  std::vector<ScopedList> mLists;
  std::vector<ScopedReference> mReferences;
  std::vector<ScopedHandle> mAliases;
  std::vector<std::unique_ptr<char[]>> mArrays;
};
