#include "agent/store/SmartStore.h"

namespace agent {

namespace {

// What a list names, as stored.
enum MemberKind : int64_t { kWorkgroup = 1, kSet = 2, kSmartSet = 3 };

uint32_t Number(const Statement& row, int column) { return static_cast<uint32_t>(row.Integer(column)); }

}  // namespace

bool SmartStore::Exists(const char* sql, uint32_t id) {
  Statement find(database_, sql);
  return find.Bind(1, int64_t{id}).Step();
}

uint32_t SmartStore::CreateSmartSet(const std::string& name, const std::string& rule) {
  Statement(database_, "INSERT INTO smart_sets(name, rule) VALUES(?,?)").Bind(1, name).Bind(2, rule).Run();
  return static_cast<uint32_t>(database_.LastInsertedRow());
}

bool SmartStore::ChangeSmartSet(const SmartSet& set) {
  if (!FindSmartSet(set.id)) return false;
  Statement update(database_, "UPDATE smart_sets SET name=?, rule=? WHERE id=?");
  update.Bind(1, set.name).Bind(2, set.rule).Bind(3, int64_t{set.id}).Run();
  return true;
}

bool SmartStore::DeleteSmartSet(uint32_t id) {
  Transaction transaction(database_);
  if (!FindSmartSet(id)) return false;
  Statement members(database_, "DELETE FROM smart_list_members WHERE kind=? AND member=?");
  members.Bind(1, int64_t{kSmartSet}).Bind(2, int64_t{id}).Run();
  Statement(database_, "DELETE FROM smart_sets WHERE id=?").Bind(1, int64_t{id}).Run();
  transaction.Commit();
  return true;
}

std::vector<SmartSet> SmartStore::SmartSets() {
  std::vector<SmartSet> sets;
  Statement rows(database_, "SELECT id, name, rule FROM smart_sets ORDER BY name, id");
  while (rows.Step()) sets.push_back({Number(rows, 0), rows.Text(1), rows.Text(2)});
  return sets;
}

std::optional<SmartSet> SmartStore::FindSmartSet(uint32_t id) {
  Statement row(database_, "SELECT name, rule FROM smart_sets WHERE id=?");
  if (!row.Bind(1, int64_t{id}).Step()) return std::nullopt;
  return SmartSet{id, row.Text(0), row.Text(1)};
}

uint32_t SmartStore::CreateSmartList(const std::string& name, const SmartListQuery& query) {
  Transaction transaction(database_);
  Statement(database_, "INSERT INTO smart_lists(name) VALUES(?)").Bind(1, name).Run();
  const auto id = static_cast<uint32_t>(database_.LastInsertedRow());
  PutQuery(id, query);
  transaction.Commit();
  return id;
}

bool SmartStore::RenameSmartList(uint32_t id, const std::string& name) {
  if (!Exists("SELECT 1 FROM smart_lists WHERE id=?", id)) return false;
  Statement(database_, "UPDATE smart_lists SET name=? WHERE id=?").Bind(1, name).Bind(2, int64_t{id}).Run();
  return true;
}

bool SmartStore::SetSmartListQuery(uint32_t id, const SmartListQuery& query) {
  Transaction transaction(database_);
  if (!Exists("SELECT 1 FROM smart_lists WHERE id=?", id)) return false;
  PutQuery(id, query);
  transaction.Commit();
  return true;
}

bool SmartStore::DeleteSmartList(uint32_t id) {
  Transaction transaction(database_);
  if (!Exists("SELECT 1 FROM smart_lists WHERE id=?", id)) return false;
  PutQuery(id, {});
  Statement(database_, "DELETE FROM smart_lists WHERE id=?").Bind(1, int64_t{id}).Run();
  transaction.Commit();
  return true;
}

void SmartStore::PutQuery(uint32_t id, const SmartListQuery& query) {
  Statement(database_, "DELETE FROM smart_list_members WHERE list=?").Bind(1, int64_t{id}).Run();
  Statement insert(database_, "INSERT OR IGNORE INTO smart_list_members VALUES(?,?,?)");
  const auto put = [&](MemberKind kind, const std::vector<uint32_t>& members) {
    for (const uint32_t member : members) {
      insert.Bind(1, int64_t{id}).Bind(2, int64_t{kind}).Bind(3, int64_t{member}).Run();
    }
  };
  put(kWorkgroup, query.workgroupIDs);
  put(kSet, query.setIDs);
  put(kSmartSet, query.smartSetIDs);
}

SmartListQuery SmartStore::QueryOf(uint32_t id) {
  SmartListQuery query;
  Statement rows(database_, "SELECT kind, member FROM smart_list_members WHERE list=? ORDER BY kind, member");
  rows.Bind(1, int64_t{id});
  while (rows.Step()) {
    const int64_t kind = rows.Integer(0);
    auto& members = kind == kWorkgroup ? query.workgroupIDs : kind == kSet ? query.setIDs : query.smartSetIDs;
    members.push_back(Number(rows, 1));
  }
  return query;
}

std::vector<SmartList> SmartStore::SmartLists() {
  std::vector<SmartList> lists;
  Statement rows(database_, "SELECT id, name FROM smart_lists ORDER BY name, id");
  while (rows.Step()) lists.push_back({Number(rows, 0), rows.Text(1), QueryOf(Number(rows, 0))});
  return lists;
}

std::optional<SmartList> SmartStore::FindSmartList(uint32_t id) {
  Statement row(database_, "SELECT name FROM smart_lists WHERE id=?");
  if (!row.Bind(1, int64_t{id}).Step()) return std::nullopt;
  return SmartList{id, row.Text(0), QueryOf(id)};
}

void SmartStore::CountClick(uint32_t fontID) {
  Statement count(database_,
                  "INSERT INTO panel_clicks VALUES(?,1) ON CONFLICT(font) DO UPDATE SET count=MIN(count+1,4294967295)");
  count.Bind(1, int64_t{fontID}).Run();
}

std::map<uint32_t, uint32_t> SmartStore::Clicks() {
  std::map<uint32_t, uint32_t> clicks;
  Statement rows(database_, "SELECT font, count FROM panel_clicks");
  while (rows.Step()) clicks[Number(rows, 0)] = Number(rows, 1);
  return clicks;
}

}  // namespace agent
