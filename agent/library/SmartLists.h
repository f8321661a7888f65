// Smart lists: the ones that people made, and four that are always there. Finds their fonts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "agent/activation/Activations.h"
#include "agent/fonts/FontRule.h"
#include "agent/fonts/FontTable.h"
#include "agent/store/SmartStore.h"
#include "agent/store/UserStore.h"

namespace agent {

class SmartLists {
 public:
  struct Parts {
    const FontTable& table;
    const Activations& activations;
    UserStore& user;
    SmartStore& store;
    const Workgroups& workgroups;
  };
  explicit SmartLists(const Parts& parts) : parts_(parts) {}

  // First the four that are always there: "All", "Active", "In open documents" and "Recently added".
  std::vector<SmartList> All() const;
  std::optional<SmartList> Find(uint32_t id) const;

  // The fonts, sorted by name. A set or smart set that does not exist adds none. Throws RuleError if the rule of a
  // smart set cannot be read, which only another version of this program can have stored.
  std::vector<const Font*> FontsOf(const SmartListQuery& query) const;
  // Nothing if there is no such list.
  std::optional<std::vector<const Font*>> FontsOf(uint32_t listID) const;
  std::vector<const Font*> FontsOf(const FontRule& rule) const;

  // The definition of a list for people and programs, a line for each part; empty if there is no such list:
  //   smartlist 101 "Headlines"
  //   workgroup 1 "Font Library"
  //   set 3 "Titles"
  //   smartset 2 "Bold": weight >= 700
  std::string TreeText(uint32_t id) const;

  static bool IsBuiltIn(uint32_t id) { return id < kFirstSmartListID; }

 private:
  template <class Belongs>
  std::vector<const Font*> FontsThat(const Belongs& belong) const;

  Parts parts_;
};

}  // namespace agent
