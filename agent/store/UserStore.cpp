#include "agent/store/UserStore.h"

#include <sys/stat.h>

#include <array>

#include "platform/Clock.h"

namespace agent {

namespace {

// Steps are added, never changed.
constexpr std::array<const char*, 6> kMigrations = {R"(
CREATE TABLE fonts(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id > 0 AND id < 2147483648), path TEXT NOT NULL,
                   face INTEGER NOT NULL, device INTEGER, inode INTEGER, name TEXT, UNIQUE(path, face));
CREATE INDEX fonts_by_file ON fonts(device, inode, face);
CREATE TABLE families(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), name TEXT NOT NULL UNIQUE);
CREATE TABLE activations(font INTEGER PRIMARY KEY REFERENCES fonts(id), state INTEGER NOT NULL);
CREATE TABLE sets(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), workgroup INTEGER NOT NULL,
                  name TEXT NOT NULL);
CREATE TABLE set_fonts(set_id INTEGER NOT NULL REFERENCES sets(id), font INTEGER NOT NULL REFERENCES fonts(id),
                       place INTEGER NOT NULL, PRIMARY KEY(set_id, font)) WITHOUT ROWID;)",
                                                    // Null in rows that the first version wrote, until the next scan.
                                                    "ALTER TABLE fonts ADD COLUMN content TEXT",
                                                    R"(
ALTER TABLE fonts ADD COLUMN added INTEGER NOT NULL DEFAULT 0;
CREATE TABLE smart_sets(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), name TEXT NOT NULL,
                        rule TEXT NOT NULL);
CREATE TABLE smart_lists(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id > 100 AND id < 2147483648), name TEXT NOT NULL);
INSERT INTO sqlite_sequence VALUES('smart_lists', 100);
CREATE TABLE smart_list_members(list INTEGER NOT NULL REFERENCES smart_lists(id), kind INTEGER NOT NULL,
                                member INTEGER NOT NULL, PRIMARY KEY(list, kind, member)) WITHOUT ROWID;
CREATE TABLE panel_clicks(font INTEGER PRIMARY KEY REFERENCES fonts(id), count INTEGER NOT NULL);)",
                                                    R"(
CREATE TABLE denied_rights(name TEXT NOT NULL, workgroup INTEGER NOT NULL, PRIMARY KEY(name, workgroup)) WITHOUT ROWID;)",
                                                    R"(
CREATE TABLE font_numbers(revision INTEGER NOT NULL);
INSERT INTO font_numbers VALUES(random());
CREATE TRIGGER font_added AFTER INSERT ON fonts BEGIN UPDATE font_numbers SET revision=random(); END;
CREATE TRIGGER font_changed AFTER UPDATE ON fonts BEGIN UPDATE font_numbers SET revision=random(); END;
CREATE TRIGGER font_removed AFTER DELETE ON fonts BEGIN UPDATE font_numbers SET revision=random(); END;)",
                                                    R"(
CREATE TABLE new_versions(former INTEGER PRIMARY KEY REFERENCES fonts(id), font INTEGER NOT NULL REFERENCES fonts(id));)"};

int64_t Signed(uint64_t value) { return static_cast<int64_t>(value); }

// What a record says about the content of a face; never empty.
std::string ContentOf(const FontFace& face) {
  return std::to_string(face.checksum) + " " + std::to_string(face.glyphsureChecksum) + " " +
         std::to_string(face.kerningChecksum) + " " + face.version;
}

bool IsStillThere(const std::string& path, const FileIdentity& identity) {
  FileIdentity now;
  std::string problem;
  return FileIdentity::Of(path, now, problem) && now.IsSameFile(identity);
}

}  // namespace

Database UserStore::OpenOrCopy(const std::string& path, std::string& unwritable) {
  try {
    return Database(path);
  } catch (const StoreError& error) {
    if (!error.IsUnwritable()) throw;
    unwritable = error.what();
  }
  return Database(path, Database::Place::kMemory);
}

bool UserStore::KeepInMemory(const StoreError& error) {
  if (!error.IsUnwritable() || !unwritable_.empty()) return false;
  database_.MoveToMemory();
  unwritable_ = error.what();
  return true;
}

bool UserStore::ReturnToFile() {
  if (unwritable_.empty() || !database_.ReturnToFile()) return false;
  unwritable_.clear();
  return true;
}

UserStore::UserStore(const std::string& path) : database_(OpenOrCopy(path, unwritable_)) {
  database_.Check();
  try {
    database_.Migrate(kMigrations);
  } catch (const StoreError& error) {
    if (!KeepInMemory(error)) throw;
    database_.Migrate(kMigrations);
  }
}

// Finds the font that this place had at the last scan. Returns false if there was none.
bool UserStore::FindFontAt(const std::string& path, int32_t face, StoredFont& font) {
  Statement find(database_, "SELECT id, device, inode, name, content, added FROM fonts WHERE path=? AND face=?");
  if (!find.Bind(1, path).Bind(2, int64_t{face}).Step()) return false;
  font = {static_cast<uint32_t>(find.Integer(0)),
          find.Integer(1),
          find.Integer(2),
          find.Text(3),
          find.Text(4),
          find.Integer(5)};
  return true;
}

// A moved file has its number, and nothing else is at its old place. A file that came back was replaced by another one.
std::optional<uint32_t> UserStore::FindFontElsewhere(const FontFace& face, const FileIdentity& identity) {
  Statement moved(database_,
                  "SELECT id, path FROM fonts WHERE device=? AND inode=? AND face=? AND name=? AND "
                  "(content=? OR content IS NULL)");
  moved.Bind(1, Signed(identity.device)).Bind(2, Signed(identity.inode)).Bind(3, int64_t{face.faceIndex});
  moved.Bind(4, face.postScriptName).Bind(5, ContentOf(face));
  while (moved.Step()) {
    if (!IsStillThere(moved.Text(1), identity)) return static_cast<uint32_t>(moved.Integer(0));
  }
  Statement replaced(database_, "SELECT id FROM fonts WHERE path='' AND name=? AND content=?");
  if (!replaced.Bind(1, face.postScriptName).Bind(2, ContentOf(face)).Step()) return std::nullopt;
  return static_cast<uint32_t>(replaced.Integer(0));
}

int64_t UserStore::AddedOf(uint32_t id) {
  Statement find(database_, "SELECT added FROM fonts WHERE id=?");
  return find.Bind(1, int64_t{id}).Step() ? find.Integer(0) : 0;
}

uint32_t UserStore::InsertFont(const std::string& path, const FontFace& face) {
  Statement insert(database_, "INSERT INTO fonts(path, face, added) VALUES(?,?,?)");
  insert.Bind(1, path).Bind(2, int64_t{face.faceIndex}).Bind(3, platform::Clock::WholeSeconds()).Run();
  return static_cast<uint32_t>(database_.LastInsertedRow());
}

void UserStore::PutFont(uint32_t id, const std::string& path, const FontFace& face, const FileIdentity& identity) {
  Statement put(database_, "UPDATE fonts SET path=?, face=?, device=?, inode=?, name=?, content=? WHERE id=?");
  put.Bind(1, path).Bind(2, int64_t{face.faceIndex}).Bind(3, Signed(identity.device));
  put.Bind(4, Signed(identity.inode)).Bind(5, face.postScriptName).Bind(6, ContentOf(face)).Bind(7, int64_t{id}).Run();
}

// Takes the font from its place, which another one has now. Its row stays, because the file may come back.
void UserStore::DisplaceFont(uint32_t id) {
  Statement(database_, "UPDATE fonts SET path='', face=-id, device=NULL, inode=NULL WHERE id=?")
      .Bind(1, int64_t{id})
      .Run();
}

std::map<uint32_t, uint32_t> UserStore::NewVersions() {
  std::map<uint32_t, uint32_t> versions;
  Statement rows(database_, "SELECT former, font FROM new_versions");
  while (rows.Step()) versions[static_cast<uint32_t>(rows.Integer(0))] = static_cast<uint32_t>(rows.Integer(1));
  return versions;
}

// A new version takes over what the user did with the old one.
void UserStore::TakeOver(uint32_t former, uint32_t id) {
  // An older version may have come back.
  Statement(database_, "DELETE FROM new_versions WHERE former=?").Bind(1, int64_t{id}).Run();
  Statement put(database_, "INSERT OR REPLACE INTO new_versions VALUES(?,?)");
  put.Bind(1, int64_t{former}).Bind(2, int64_t{id}).Run();
  for (const std::string table : {"activations", "set_fonts", "panel_clicks"}) {
    const std::string move = "UPDATE OR IGNORE " + table + " SET font=?2 WHERE font=?1";
    const std::string remove = "DELETE FROM " + table + " WHERE font=?";
    Statement(database_, move.c_str()).Bind(1, int64_t{former}).Bind(2, int64_t{id}).Run();
    Statement(database_, remove.c_str()).Bind(1, int64_t{former}).Run();
  }
}

FontNumber UserStore::FontID(const std::string& path, const FontFace& face, const FileIdentity& identity) {
  StoredFont known;
  const bool isKnown = FindFontAt(path, face.faceIndex, known);
  const std::string content = ContentOf(face);
  const uint32_t familyID = FamilyID(face.family);
  if (isKnown && known.name == face.postScriptName && (known.content == content || known.content.empty())) {
    const bool isSame = known.device == Signed(identity.device) && known.inode == Signed(identity.inode);
    if (!isSame || known.content.empty()) PutFont(known.id, path, face, identity);
    return {known.id, 0, known.added, familyID};
  }
  Transaction transaction(database_);
  if (isKnown) DisplaceFont(known.id);
  const std::optional<uint32_t> elsewhere = FindFontElsewhere(face, identity);
  FontNumber number{elsewhere ? *elsewhere : InsertFont(path, face), 0, 0, familyID};
  number.added = AddedOf(number.id);
  PutFont(number.id, path, face, identity);
  if (isKnown && known.name == face.postScriptName) {
    number.former = known.id;
    TakeOver(known.id, number.id);
  }
  transaction.Commit();
  return number;
}

uint32_t UserStore::FamilyID(const std::string& family) {
  Statement find(database_, "SELECT id FROM families WHERE name=?");
  if (find.Bind(1, family).Step()) return static_cast<uint32_t>(find.Integer(0));
  find.Reset();
  Statement(database_, "INSERT INTO families(name) VALUES(?)").Bind(1, family).Run();
  return static_cast<uint32_t>(database_.LastInsertedRow());
}

int64_t UserStore::Revision() {
  Statement find(database_, "SELECT revision FROM font_numbers");
  return find.Step() ? find.Integer(0) : 0;
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

bool UserStore::HasSet(uint32_t id) {
  Statement find(database_, "SELECT 1 FROM sets WHERE id=?");
  return find.Bind(1, int64_t{id}).Step();
}

bool UserStore::RenameSet(uint32_t id, const std::string& name) {
  if (!HasSet(id)) return false;
  Statement(database_, "UPDATE sets SET name=? WHERE id=?").Bind(1, name).Bind(2, int64_t{id}).Run();
  return true;
}

bool UserStore::DeleteSet(uint32_t id) {
  Transaction transaction(database_);
  if (!HasSet(id)) return false;
  // Kind 2 is a set, as in SmartStore.cpp.
  Statement(database_, "DELETE FROM smart_list_members WHERE kind=2 AND member=?").Bind(1, int64_t{id}).Run();
  Statement(database_, "DELETE FROM set_fonts WHERE set_id=?").Bind(1, int64_t{id}).Run();
  Statement(database_, "DELETE FROM sets WHERE id=?").Bind(1, int64_t{id}).Run();
  transaction.Commit();
  return true;
}

bool UserStore::RemoveFromSet(uint32_t id, const std::vector<uint32_t>& fontIDs) {
  Transaction transaction(database_);
  if (!HasSet(id)) return false;
  Statement remove(database_, "DELETE FROM set_fonts WHERE set_id=? AND font=?");
  for (const uint32_t font : fontIDs) remove.Bind(1, int64_t{id}).Bind(2, int64_t{font}).Run();
  transaction.Commit();
  return true;
}

bool UserStore::AddToSets(const std::vector<uint32_t>& setIDs, const std::vector<uint32_t>& fontIDs) {
  Transaction transaction(database_);
  for (const uint32_t id : setIDs) {
    if (!HasSet(id)) return false;
    AppendToSet(id, fontIDs);
  }
  transaction.Commit();
  return true;
}

void UserStore::ForgetWorkgroup(uint32_t id, uint32_t heir) {
  Transaction transaction(database_);
  Statement(database_, "UPDATE sets SET workgroup=?2 WHERE workgroup=?1")
      .Bind(1, int64_t{id})
      .Bind(2, int64_t{heir})
      .Run();
  // Kind 1 is a workgroup, as in SmartStore.cpp.
  Statement(database_, "DELETE FROM smart_list_members WHERE kind=1 AND member=?").Bind(1, int64_t{id}).Run();
  Statement(database_, "DELETE FROM denied_rights WHERE workgroup=?").Bind(1, int64_t{id}).Run();
  transaction.Commit();
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
