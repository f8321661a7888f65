// user.db: what cannot be found again by a scan (sets, lasting activations), and the IDs under which others know fonts
// and families. Migrated by its version and never deleted; a damaged one is never written to.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "agent/store/Database.h"
#include "agent/store/IndexStore.h"

namespace agent {

struct FontSet {
  uint32_t id = 0;
  uint32_t workgroupID = 0;
  std::string name;
  std::vector<uint32_t> fontIDs;
};

// All functions throw StoreError. What returned has been stored, unless the store is in memory.
class UserStore {
 public:
  // Also throws if the file is damaged or of a later version than this program's.
  // If the file cannot be written, the store is a copy of it in memory.
  explicit UserStore(const std::string& path);

  // Goes on in memory, because of this error. Returns false, with nothing changed, if it is another kind of error or
  // the store is in memory already.
  bool KeepInMemory(const StoreError& error);
  // Stores what is in memory if the file can be written again. Returns true if that has just happened.
  bool ReturnToFile();
  // Why what changes is kept in memory only and lost with this object; empty if it is stored.
  const std::string& Unwritable() const { return unwritable_; }

  // Returns a lasting ID, above 0 and below 2^31. It means one face with one content (its name, version and checksums),
  // because clients keep the record of an ID for good. A file that was moved within its file system keeps its IDs, and
  // a font that was replaced by another one has its ID again when it comes back. Also gives its family an ID.
  FontNumber FontID(const std::string& path, const FontFace& face, const FileIdentity& identity);
  uint32_t FamilyID(const std::string& family);
  // The ID of each replaced font to that of the version which replaced it, which may be replaced itself. No circles.
  std::map<uint32_t, uint32_t> NewVersions();
  // Another number after each change of an ID. If it is the same as before, so are the IDs.
  int64_t Revision();

  // Activations that outlive clients and the agent: font ID to AgentActivationState.
  std::map<uint32_t, int32_t> Activations();
  void SetActivations(const std::vector<uint32_t>& fontIDs, int32_t state);  // all or none
  void RemoveActivations(const std::vector<uint32_t>& fontIDs);              // all or none

  uint32_t CreateSet(const std::string& name, uint32_t workgroupID, const std::vector<uint32_t>& fontIDs);
  // Returns false, with nothing changed, if one of the sets does not exist.
  bool AddToSets(const std::vector<uint32_t>& setIDs, const std::vector<uint32_t>& fontIDs);
  // These return false, with nothing changed, if the set does not exist.
  bool RenameSet(uint32_t id, const std::string& name);
  bool DeleteSet(uint32_t id);  // smart lists that name it lose it
  bool RemoveFromSet(uint32_t id, const std::vector<uint32_t>& fontIDs);
  std::vector<FontSet> Sets();
  // After the workgroup was deleted: its sets go to `heir`, smart lists lose it, and so do the rights.
  void ForgetWorkgroup(uint32_t id, uint32_t heir);

  // For the stores that keep their tables in the same file.
  Database& Tables() { return database_; }

 private:
  struct StoredFont {
    uint32_t id = 0;
    int64_t device = 0, inode = 0;
    std::string name, content;
    int64_t added = 0;
  };

  bool FindFontAt(const std::string& path, int32_t face, StoredFont& font);
  std::optional<uint32_t> FindFontElsewhere(const FontFace& face, const FileIdentity& identity);
  int64_t AddedOf(uint32_t id);
  uint32_t InsertFont(const std::string& path, const FontFace& face);
  void PutFont(uint32_t id, const std::string& path, const FontFace& face, const FileIdentity& identity);
  void DisplaceFont(uint32_t id);
  void TakeOver(uint32_t former, uint32_t id);
  bool HasSet(uint32_t id);
  void AppendToSet(uint32_t setID, const std::vector<uint32_t>& fontIDs);
  static Database OpenOrCopy(const std::string& path, std::string& unwritable);

  std::string unwritable_;
  Database database_;
};

}  // namespace agent
