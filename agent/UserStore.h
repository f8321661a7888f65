// user.db: what cannot be found again by a scan (sets, lasting activations), and the IDs under which others know fonts
// and families. Migrated by its version and never deleted; a damaged one is never written to.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "agent/Database.h"
#include "agent/IndexStore.h"

namespace agent {

struct FontSet {
  uint32_t id = 0;
  uint32_t workgroupID = 0;
  std::string name;
  std::vector<uint32_t> fontIDs;
};

// All functions throw StoreError. What returned has been stored.
class UserStore {
 public:
  // Also throws if the file is damaged or of a later version than this program's.
  explicit UserStore(const std::string& path);

  // Returns a lasting ID for a path and face, above 0 and below 2^31. A file that was moved within its file system
  // keeps its IDs.
  uint32_t FontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  uint32_t FamilyID(const std::string& family);

  // Activations that outlive clients and the agent: font ID to AgentActivationState.
  std::map<uint32_t, int32_t> Activations();
  void SetActivations(const std::vector<uint32_t>& fontIDs, int32_t state);  // all or none
  void RemoveActivations(const std::vector<uint32_t>& fontIDs);              // all or none

  uint32_t CreateSet(const std::string& name, uint32_t workgroupID, const std::vector<uint32_t>& fontIDs);
  // Returns false, with nothing changed, if one of the sets does not exist.
  bool AddToSets(const std::vector<uint32_t>& setIDs, const std::vector<uint32_t>& fontIDs);
  std::vector<FontSet> Sets();

 private:
  std::optional<uint32_t> KnownFontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  std::optional<uint32_t> MovedFontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  void AppendToSet(uint32_t setID, const std::vector<uint32_t>& fontIDs);
  Database database_;
};

}  // namespace agent
