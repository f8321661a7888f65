#include "agent/store/IndexStore.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <map>
#include <system_error>

namespace agent {

namespace {

// Increase it when the reader finds more or other things in a file: rows of another version are not used.
constexpr int kIndexVersion = 3;

constexpr const char* kTables = R"(
CREATE TABLE files(path TEXT PRIMARY KEY, device INTEGER, inode INTEGER, size INTEGER, modified INTEGER,
                   verdict INTEGER, problem TEXT) WITHOUT ROWID;
CREATE TABLE faces(path TEXT REFERENCES files(path) ON DELETE CASCADE, face INTEGER, postscript_name TEXT, family TEXT,
                   style TEXT, kind TEXT, foundry TEXT, version TEXT, printer_font TEXT, kerning INTEGER,
                   checksum INTEGER, glyphsure INTEGER, weight INTEGER, width INTEGER, design INTEGER, flags INTEGER,
                   scripts TEXT, languages TEXT, PRIMARY KEY(path, face)) WITHOUT ROWID;)";

int64_t Signed(uint64_t value) { return static_cast<int64_t>(value); }

constexpr int64_t kItalic = 1, kMonospaced = 2, kVariable = 4, kColoured = 8;

int64_t FlagsOf(const FontTraits& traits) {
  return (traits.isItalic ? kItalic : 0) | (traits.isMonospaced ? kMonospaced : 0) |
         (traits.isVariable ? kVariable : 0) | (traits.isColoured ? kColoured : 0);
}

FontTraits TraitsOfRow(const Statement& row, int column) {
  FontTraits traits;
  traits.weight = static_cast<uint16_t>(row.Integer(column));
  traits.width = static_cast<uint8_t>(row.Integer(column + 1));
  traits.design = static_cast<FontDesign>(row.Integer(column + 2));
  const int64_t flags = row.Integer(column + 3);
  traits.isItalic = (flags & kItalic) != 0;
  traits.isMonospaced = (flags & kMonospaced) != 0;
  traits.isVariable = (flags & kVariable) != 0;
  traits.isColoured = (flags & kColoured) != 0;
  return traits;
}

FontFace FaceOfRow(const Statement& row) {
  FontFace face;
  face.faceIndex = static_cast<int32_t>(row.Integer(1));
  face.postScriptName = row.Text(2);
  face.family = row.Text(3);
  face.style = row.Text(4);
  face.kind = row.Text(5);
  face.foundry = row.Text(6);
  face.version = row.Text(7);
  face.printerFont = row.Text(8);
  face.kerningChecksum = static_cast<uint32_t>(row.Integer(9));
  face.checksum = static_cast<uint32_t>(row.Integer(10));
  face.glyphsureChecksum = static_cast<uint32_t>(row.Integer(11));
  face.traits = TraitsOfRow(row, 12);
  face.coverage = {CoverageOfText(row.Text(16)), CoverageOfText(row.Text(17))};
  return face;
}

void InsertFace(Statement& insert, const std::string& path, const FontFace& face) {
  insert.Bind(1, path).Bind(2, int64_t{face.faceIndex}).Bind(3, face.postScriptName).Bind(4, face.family);
  insert.Bind(5, face.style).Bind(6, face.kind).Bind(7, face.foundry).Bind(8, face.version).Bind(9, face.printerFont);
  insert.Bind(10, int64_t{face.kerningChecksum}).Bind(11, int64_t{face.checksum});
  insert.Bind(12, int64_t{face.glyphsureChecksum}).Bind(13, int64_t{face.traits.weight});
  insert.Bind(14, int64_t{face.traits.width}).Bind(15, static_cast<int64_t>(face.traits.design));
  insert.Bind(16, FlagsOf(face.traits)).Bind(17, TextOfCoverage(face.coverage.scripts));
  insert.Bind(18, TextOfCoverage(face.coverage.languages)).Run();
}

}  // namespace

bool FileIdentity::Of(const std::string& path, FileIdentity& identity, std::string& problem) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) {
    problem = std::generic_category().message(errno);
    return false;
  }
  identity.device = info.st_dev;
  identity.inode = info.st_ino;
  identity.size = static_cast<uint64_t>(info.st_size);
  identity.modified = int64_t{info.st_mtim.tv_sec} * 1000000000 + info.st_mtim.tv_nsec;
  return true;
}

IndexStore::IndexStore(const std::string& path, const std::function<void(const std::string&)>& report) : path_(path) {
  try {
    Open();
  } catch (const StoreError& error) {
    if (!error.IsDamage()) throw;
    report(std::string(error.what()) + "; moved aside to " + path + ".damaged and created again");
    database_.reset();
    for (const char* companion : {"-wal", "-shm"}) std::remove((path + companion).c_str());
    if (std::rename(path.c_str(), (path + ".damaged").c_str()) != 0) throw;
    Open();
  }
}

void IndexStore::Open() {
  database_ = std::make_unique<Database>(path_);
  database_->Check();
  if (database_->Version() == kIndexVersion) return;
  Transaction transaction(*database_);
  database_->Execute("DROP TABLE IF EXISTS faces");
  database_->Execute("DROP TABLE IF EXISTS files");
  database_->Execute(kTables);
  database_->SetVersion(kIndexVersion);
  transaction.Commit();
}

std::vector<IndexedFile> IndexStore::Load() {
  std::map<std::string, std::vector<FontFace>> faces;
  Statement faceRows(
      *database_,
      "SELECT path, face, postscript_name, family, style, kind, foundry, version, printer_font, "
      "kerning, checksum, glyphsure, weight, width, design, flags, scripts, languages FROM faces ORDER BY path, face");
  while (faceRows.Step()) faces[faceRows.Text(0)].push_back(FaceOfRow(faceRows));
  std::vector<IndexedFile> files;
  Statement rows(*database_, "SELECT path, device, inode, size, modified, verdict, problem FROM files");
  while (rows.Step()) {
    IndexedFile file;
    file.path = rows.Text(0);
    file.identity.device = static_cast<uint64_t>(rows.Integer(1));
    file.identity.inode = static_cast<uint64_t>(rows.Integer(2));
    file.identity.size = static_cast<uint64_t>(rows.Integer(3));
    file.identity.modified = rows.Integer(4);
    file.content.verdict = static_cast<FontVerdict>(rows.Integer(5));
    file.content.problem = rows.Text(6);
    file.content.faces = std::move(faces[file.path]);
    files.push_back(std::move(file));
  }
  return files;
}

void IndexStore::Put(const IndexedFile& file) {
  Transaction transaction(*database_);
  Statement(*database_, "DELETE FROM files WHERE path=?").Bind(1, file.path).Run();
  Statement insertFile(*database_, "INSERT INTO files VALUES(?,?,?,?,?,?,?)");
  insertFile.Bind(1, file.path).Bind(2, Signed(file.identity.device)).Bind(3, Signed(file.identity.inode));
  insertFile.Bind(4, Signed(file.identity.size)).Bind(5, file.identity.modified);
  insertFile.Bind(6, static_cast<int64_t>(file.content.verdict)).Bind(7, file.content.problem).Run();
  Statement insertFace(*database_, "INSERT INTO faces VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
  for (const FontFace& face : file.content.faces) InsertFace(insertFace, file.path, face);
  transaction.Commit();
}

void IndexStore::Remove(const std::string& path) {
  Statement(*database_, "DELETE FROM files WHERE path=?").Bind(1, path).Run();
}

}  // namespace agent
