// The part of user.db that panels and people fill: smart sets, smart lists, counts of clicks.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "agent/store/Database.h"

namespace agent {

struct SmartSet {
  uint32_t id = 0;
  std::string name;
  std::string rule;  // see FontRule.h
};

struct SmartListQuery {
  std::vector<uint32_t> workgroupIDs, setIDs, smartSetIDs;
};

struct SmartList {
  uint32_t id = 0;
  std::string name;
  SmartListQuery query;  // the fonts of all that it names
};

// The IDs below are for lists that the agent has by itself.
inline constexpr uint32_t kFirstSmartListID = 101;

// All functions throw StoreError. What returned has been stored. A function that returns a boolean returns false, with
// nothing changed, if there is no such set or list.
class SmartStore {
 public:
  // `user` is user.db, which has the tables, and must outlive this.
  explicit SmartStore(Database& user) : database_(user) {}

  uint32_t CreateSmartSet(const std::string& name, const std::string& rule);
  bool ChangeSmartSet(const SmartSet& set);
  bool DeleteSmartSet(uint32_t id);  // lists that name it lose it
  std::vector<SmartSet> SmartSets();
  std::optional<SmartSet> FindSmartSet(uint32_t id);

  uint32_t CreateSmartList(const std::string& name, const SmartListQuery& query);
  bool RenameSmartList(uint32_t id, const std::string& name);
  bool SetSmartListQuery(uint32_t id, const SmartListQuery& query);
  bool DeleteSmartList(uint32_t id);
  std::vector<SmartList> SmartLists();  // by name
  std::optional<SmartList> FindSmartList(uint32_t id);

  void CountClick(uint32_t fontID);
  std::map<uint32_t, uint32_t> Clicks();  // by font ID

 private:
  bool Exists(const char* sql, uint32_t id);
  void PutQuery(uint32_t id, const SmartListQuery& query);
  SmartListQuery QueryOf(uint32_t id);

  Database& database_;
};

}  // namespace agent
