#include "agent/UserStore.h"

#include <sys/stat.h>

#include <array>

namespace agent {

namespace {

// Steps are added, never changed.
constexpr std::array<const char*, 1> kMigrations = {R"(
CREATE TABLE fonts(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id > 0 AND id < 2147483648), path TEXT NOT NULL,
                   face INTEGER NOT NULL, device INTEGER, inode INTEGER, name TEXT, UNIQUE(path, face));
CREATE INDEX fonts_by_file ON fonts(device, inode, face);
CREATE TABLE families(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), name TEXT NOT NULL UNIQUE);
CREATE TABLE activations(font INTEGER PRIMARY KEY REFERENCES fonts(id), state INTEGER NOT NULL);
CREATE TABLE sets(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), workgroup INTEGER NOT NULL,
                  name TEXT NOT NULL);
CREATE TABLE set_fonts(set_id INTEGER NOT NULL REFERENCES sets(id), font INTEGER NOT NULL REFERENCES fonts(id),
                       place INTEGER NOT NULL, PRIMARY KEY(set_id, font)) WITHOUT ROWID;)"};

int64_t Signed(uint64_t value) { return static_cast<int64_t>(value); }

bool IsStillThere(const std::string& path, const FileIdentity& identity) {
  FileIdentity now;
  std::string problem;
  return FileIdentity::Of(path, now, problem) && now.IsSameFile(identity);
}

}  // namespace

UserStore::UserStore(const std::string& path) : database_(path) {
  database_.Check();
  database_.Migrate(kMigrations);
}

std::optional<uint32_t> UserStore::KnownFontID(const std::string& path, const FontFace& face,
                                               const FileIdentity& identity) {
  Statement find(database_, "SELECT id, device, inode, name FROM fonts WHERE path=? AND face=?");
  if (!find.Bind(1, path).Bind(2, int64_t{face.faceIndex}).Step()) return std::nullopt;
  const int64_t id = find.Integer(0);
  if (find.Integer(1) != Signed(identity.device) || find.Integer(2) != Signed(identity.inode) ||
      find.Text(3) != face.postScriptName) {
    Statement update(database_, "UPDATE fonts SET device=?, inode=?, name=? WHERE id=?");
    update.Bind(1, Signed(identity.device)).Bind(2, Signed(identity.inode)).Bind(3, face.postScriptName);
    update.Bind(4, id).Run();
  }
  return static_cast<uint32_t>(id);
}

std::optional<uint32_t> UserStore::MovedFontID(const std::string& path, const FontFace& face,
                                               const FileIdentity& identity) {
  // File systems give the number of a deleted file to the next one made: only the same name in it is the same font.
  Statement find(database_, "SELECT id, path FROM fonts WHERE device=? AND inode=? AND face=? AND name=?");
  find.Bind(1, Signed(identity.device)).Bind(2, Signed(identity.inode)).Bind(3, int64_t{face.faceIndex});
  find.Bind(4, face.postScriptName);
  while (find.Step()) {
    if (IsStillThere(find.Text(1), identity)) continue;
    const int64_t id = find.Integer(0);
    find.Reset();
    Statement(database_, "UPDATE fonts SET path=? WHERE id=?").Bind(1, path).Bind(2, id).Run();
    return static_cast<uint32_t>(id);
  }
  return std::nullopt;
}

uint32_t UserStore::FontID(const std::string& path, const FontFace& face, const FileIdentity& identity) {
  if (const auto known = KnownFontID(path, face, identity)) return *known;
  if (const auto moved = MovedFontID(path, face, identity)) return *moved;
  Statement insert(database_, "INSERT INTO fonts(path, face, device, inode, name) VALUES(?,?,?,?,?)");
  insert.Bind(1, path).Bind(2, int64_t{face.faceIndex}).Bind(3, Signed(identity.device));
  insert.Bind(4, Signed(identity.inode)).Bind(5, face.postScriptName).Run();
  return static_cast<uint32_t>(database_.LastInsertedRow());
}

uint32_t UserStore::FamilyID(const std::string& family) {
  Statement find(database_, "SELECT id FROM families WHERE name=?");
  if (find.Bind(1, family).Step()) return static_cast<uint32_t>(find.Integer(0));
  find.Reset();
  Statement(database_, "INSERT INTO families(name) VALUES(?)").Bind(1, family).Run();
  return static_cast<uint32_t>(database_.LastInsertedRow());
}

std::map<uint32_t, int32_t> UserStore::Activations() {
  std::map<uint32_t, int32_t> states;
  Statement rows(database_, "SELECT font, state FROM activations");
  while (rows.Step()) states[static_cast<uint32_t>(rows.Integer(0))] = static_cast<int32_t>(rows.Integer(1));
  return states;
}

void UserStore::SetActivations(const std::vector<uint32_t>& fontIDs, int32_t state) {
  Transaction transaction(database_);
  Statement put(database_, "INSERT INTO activations VALUES(?,?) ON CONFLICT(font) DO UPDATE SET state=excluded.state");
  for (const uint32_t id : fontIDs) put.Bind(1, int64_t{id}).Bind(2, int64_t{state}).Run();
  transaction.Commit();
}

void UserStore::RemoveActivations(const std::vector<uint32_t>& fontIDs) {
  Transaction transaction(database_);
  Statement remove(database_, "DELETE FROM activations WHERE font=?");
  for (const uint32_t id : fontIDs) remove.Bind(1, int64_t{id}).Run();
  transaction.Commit();
}

void UserStore::AppendToSet(uint32_t setID, const std::vector<uint32_t>& fontIDs) {
  Statement last(database_, "SELECT COALESCE(MAX(place), 0) FROM set_fonts WHERE set_id=?");
  last.Bind(1, int64_t{setID}).Step();
  int64_t place = last.Integer(0);
  last.Reset();
  Statement insert(database_, "INSERT OR IGNORE INTO set_fonts VALUES(?,?,?)");
  for (const uint32_t id : fontIDs) insert.Bind(1, int64_t{setID}).Bind(2, int64_t{id}).Bind(3, ++place).Run();
}

uint32_t UserStore::CreateSet(const std::string& name, uint32_t workgroupID, const std::vector<uint32_t>& fontIDs) {
  Transaction transaction(database_);
  Statement insert(database_, "INSERT INTO sets(workgroup, name) VALUES(?,?)");
  insert.Bind(1, int64_t{workgroupID}).Bind(2, name).Run();
  const auto id = static_cast<uint32_t>(database_.LastInsertedRow());
  AppendToSet(id, fontIDs);
  transaction.Commit();
  return id;
}

bool UserStore::AddToSets(const std::vector<uint32_t>& setIDs, const std::vector<uint32_t>& fontIDs) {
  Transaction transaction(database_);
  Statement find(database_, "SELECT 1 FROM sets WHERE id=?");
  for (const uint32_t id : setIDs) {
    const bool exists = find.Bind(1, int64_t{id}).Step();
    find.Reset();
    if (!exists) return false;
    AppendToSet(id, fontIDs);
  }
  transaction.Commit();
  return true;
}

std::vector<FontSet> UserStore::Sets() {
  std::vector<FontSet> sets;
  Statement rows(database_, "SELECT id, workgroup, name FROM sets ORDER BY id");
  Statement fonts(database_, "SELECT font FROM set_fonts WHERE set_id=? ORDER BY place");
  while (rows.Step()) {
    FontSet set;
    set.id = static_cast<uint32_t>(rows.Integer(0));
    set.workgroupID = static_cast<uint32_t>(rows.Integer(1));
    set.name = rows.Text(2);
    fonts.Bind(1, int64_t{set.id});
    while (fonts.Step()) set.fontIDs.push_back(static_cast<uint32_t>(fonts.Integer(0)));
    fonts.Reset();
    sets.push_back(std::move(set));
  }
  return sets;
}

}  // namespace agent
