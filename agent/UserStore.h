// user.db: what only the user can say again (sets, activations to last) and the numbers under which fonts and families
// are known to others. It is brought forward by its version and never deleted; a damaged one is never written to.
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

// All operations throw StoreError; what returned has been stored.
class UserStore {
 public:
  // Throws also if the file is damaged or of a version later than this program's.
  explicit UserStore(const std::string& path);

  // The same ID for a path and face for ever; a file that was moved within its file system takes its IDs along.
  // Above 0 and below 2^31.
  uint32_t FontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  uint32_t FamilyID(const std::string& family);

  // Activations that outlive clients and the agent: font ID to AgentActivationState.
  std::map<uint32_t, int32_t> Activations();
  void SetActivations(const std::vector<uint32_t>& fontIDs, int32_t state);  // all or none
  void RemoveActivations(const std::vector<uint32_t>& fontIDs);              // all or none

  uint32_t CreateSet(const std::string& name, uint32_t workgroupID, const std::vector<uint32_t>& fontIDs);
  // False, with nothing changed, if one of the sets does not exist.
  bool AddToSets(const std::vector<uint32_t>& setIDs, const std::vector<uint32_t>& fontIDs);
  std::vector<FontSet> Sets();

 private:
  std::optional<uint32_t> KnownFontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  std::optional<uint32_t> MovedFontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  void AppendToSet(uint32_t setID, const std::vector<uint32_t>& fontIDs);
  Database database_;
};

}  // namespace agent
