// Rights that were taken away from the user, in user.db. A right that is not there is held.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/store/Database.h"

namespace agent {

struct DeniedRight {
  std::string name;
  uint32_t workgroupID = 0;  // kAllWorkgroups: in every workgroup
};

inline constexpr uint32_t kAllWorkgroups = 0;

// All functions throw StoreError. What returned has been stored.
class RightsStore {
 public:
  // `user` is user.db, which has the table, and must outlive this.
  explicit RightsStore(Database& user) : database_(user) {}

  // With kAllWorkgroups: whether the right is held in every workgroup.
  bool IsHeld(const std::string& name, uint32_t workgroupID);
  void TakeAway(const DeniedRight& right);
  // With kAllWorkgroups it is held everywhere afterwards. In one workgroup it stays away if it was taken away in all.
  void GiveBack(const DeniedRight& right);
  std::vector<DeniedRight> Denied();  // by name, then workgroup

 private:
  Database& database_;
};

}  // namespace agent
