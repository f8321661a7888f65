#include "agent/store/RightsStore.h"

namespace agent {

bool RightsStore::IsHeld(const std::string& name, uint32_t workgroupID) {
  Statement find(database_, "SELECT 1 FROM denied_rights WHERE name=?1 AND (?2=0 OR workgroup IN (0, ?2))");
  return !find.Bind(1, name).Bind(2, int64_t{workgroupID}).Step();
}

void RightsStore::TakeAway(const DeniedRight& right) {
  Statement insert(database_, "INSERT OR IGNORE INTO denied_rights VALUES(?,?)");
  insert.Bind(1, right.name).Bind(2, int64_t{right.workgroupID}).Run();
}

void RightsStore::GiveBack(const DeniedRight& right) {
  Statement remove(database_, "DELETE FROM denied_rights WHERE name=?1 AND (?2=0 OR workgroup=?2)");
  remove.Bind(1, right.name).Bind(2, int64_t{right.workgroupID}).Run();
}

std::vector<DeniedRight> RightsStore::Denied() {
  std::vector<DeniedRight> denied;
  Statement rows(database_, "SELECT name, workgroup FROM denied_rights ORDER BY name, workgroup");
  while (rows.Step()) denied.push_back({rows.Text(0), static_cast<uint32_t>(rows.Integer(1))});
  return denied;
}

}  // namespace agent
