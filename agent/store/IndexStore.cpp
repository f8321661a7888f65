#include "agent/store/IndexStore.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace agent {

namespace {

// Increase it when the reader finds more or other things in a file: rows of another version are not used.
constexpr int kIndexVersion = 4;

constexpr const char* kTables = R"(
CREATE TABLE files(path TEXT PRIMARY KEY, device INTEGER, inode INTEGER, size INTEGER, modified INTEGER,
                   verdict INTEGER, problem TEXT, faces BLOB) WITHOUT ROWID;
CREATE TABLE numbers(revision INTEGER NOT NULL);
INSERT INTO numbers VALUES(0))";

int64_t Signed(uint64_t value) { return static_cast<int64_t>(value); }

constexpr uint8_t kItalic = 1, kMonospaced = 2, kVariable = 4, kColoured = 8;

uint8_t FlagsOf(const FontTraits& traits) {
  return static_cast<uint8_t>((traits.isItalic ? kItalic : 0) | (traits.isMonospaced ? kMonospaced : 0) |
                              (traits.isVariable ? kVariable : 0) | (traits.isColoured ? kColoured : 0));
}

void SetFlags(uint8_t flags, FontTraits& traits) {
  traits.isItalic = (flags & kItalic) != 0;
  traits.isMonospaced = (flags & kMonospaced) != 0;
  traits.isVariable = (flags & kVariable) != 0;
  traits.isColoured = (flags & kColoured) != 0;
}

// The faces of a file lie in one value, one after the other, because a hundred thousand rows of twenty columns would
// take a start longer to read than it may take. Numbers are as in memory: an index is read on the machine that wrote
// it.
class Packer {
 public:
  template <class Number>
  Packer& Add(Number number) {
    bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
    return *this;
  }
  Packer& Add(SharedText text) {
    Add(static_cast<uint32_t>(text.View().size()));
    bytes_.append(text.View());
    return *this;
  }
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) : bytes_(bytes) {}
  bool IsAtEnd() const { return bytes_.empty(); }
  bool IsCutShort() const { return isCutShort_; }  // what was read since is not valid

  template <class Number>
  Unpacker& Get(Number& number) {
    const std::string_view part = Next(sizeof number);
    if (!part.empty()) std::memcpy(&number, part.data(), sizeof number);
    return *this;
  }
  Unpacker& Get(SharedText& text) {
    uint32_t size = 0;
    Get(size);
    text = Next(size);
    return *this;
  }

 private:
  std::string_view Next(size_t size) {
    isCutShort_ = isCutShort_ || size > bytes_.size();
    const std::string_view part = isCutShort_ ? std::string_view() : bytes_.substr(0, size);
    bytes_.remove_prefix(isCutShort_ ? bytes_.size() : size);
    return part;
  }
  std::string_view bytes_;
  bool isCutShort_ = false;
};

void AddFace(const FontFace& face, const FontNumber& number, Packer& out) {
  out.Add(face.faceIndex).Add(face.postScriptName).Add(face.family).Add(face.style).Add(face.kind).Add(face.foundry);
  out.Add(face.version).Add(face.printerFont).Add(face.kerningChecksum).Add(face.checksum).Add(face.glyphsureChecksum);
  out.Add(face.traits.weight).Add(face.traits.width).Add(face.traits.design).Add(FlagsOf(face.traits));
  out.Add(face.coverage.Scripts()).Add(face.coverage.Languages());
  out.Add(number.id).Add(number.familyID).Add(number.added);
}

void GetFace(Unpacker& in, FontFace& face, FontNumber& number) {
  uint8_t flags = 0;
  SharedText scripts, languages;
  in.Get(face.faceIndex).Get(face.postScriptName).Get(face.family).Get(face.style).Get(face.kind).Get(face.foundry);
  in.Get(face.version).Get(face.printerFont).Get(face.kerningChecksum).Get(face.checksum).Get(face.glyphsureChecksum);
  in.Get(face.traits.weight).Get(face.traits.width).Get(face.traits.design).Get(flags);
  in.Get(scripts).Get(languages);
  in.Get(number.id).Get(number.familyID).Get(number.added);
  SetFlags(flags, face.traits);
  face.coverage = {scripts, languages};
}

std::string FacesOf(const IndexedFile& file) {
  Packer out;
  for (size_t i = 0; i < file.content.faces.size(); ++i) {
    AddFace(file.content.faces[i], i < file.numbers.size() ? file.numbers[i] : FontNumber(), out);
  }
  return out.Bytes();
}

// Returns false if the value is damaged.
bool SetFaces(std::string_view bytes, IndexedFile& file) {
  Unpacker in(bytes);
  while (!in.IsAtEnd()) GetFace(in, file.content.faces.emplace_back(), file.numbers.emplace_back());
  return !in.IsCutShort();
}

IndexedFile FileOfRow(const Statement& row) {
  IndexedFile file;
  file.path = row.Text(0);
  file.identity.device = static_cast<uint64_t>(row.Integer(1));
  file.identity.inode = static_cast<uint64_t>(row.Integer(2));
  file.identity.size = static_cast<uint64_t>(row.Integer(3));
  file.identity.modified = row.Integer(4);
  file.content.verdict = static_cast<FontVerdict>(row.Integer(5));
  file.content.problem = row.Text(6);
  return file;
}

}  // namespace

FileIdentity FileIdentity::Of(const struct stat& info) {
  return {info.st_dev, info.st_ino, static_cast<uint64_t>(info.st_size),
          int64_t{info.st_mtim.tv_sec} * 1000000000 + info.st_mtim.tv_nsec};
}

bool FileIdentity::Of(const std::string& path, FileIdentity& identity, std::string& problem) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) {
    problem = std::generic_category().message(errno);
    return false;
  }
  identity = Of(info);
  return true;
}

IndexStore::IndexStore(const std::string& path, const std::function<void(const std::string&)>& report)
    : path_(path), report_(report) {
  try {
    Open();
  } catch (const StoreError& error) {
    Replace(error);
  }
}

// Moves a damaged file aside and makes another one. Throws what is no damage.
void IndexStore::Replace(const StoreError& damage) {
  if (!damage.IsDamage()) throw StoreError(damage);
  report_(std::string(damage.what()) + "; moved aside to " + path_ + ".damaged and created again");
  database_.reset();
  for (const char* companion : {"-wal", "-shm"}) std::remove((path_ + companion).c_str());
  if (std::rename(path_.c_str(), (path_ + ".damaged").c_str()) != 0) throw StoreError(damage);
  Open();
}

void IndexStore::Open() {
  try {
    OpenIn(Database::Place::kFile);
  } catch (const StoreError& error) {
    if (!error.IsUnwritable()) throw;
    report_(std::string(error.what()) + "; the index is kept in memory");
    OpenIn(Database::Place::kMemory);
  }
}

void IndexStore::OpenIn(Database::Place place) {
  revision_ = 0;
  database_ = std::make_unique<Database>(path_, place);
  if (database_->Version() == kIndexVersion) {
    Statement find(*database_, "SELECT revision FROM numbers");
    if (find.Step()) revision_ = find.Integer(0);
    return;
  }
  Transaction transaction(*database_);
  for (const char* table : {"faces", "files", "numbers"}) {
    database_->Execute(std::string("DROP TABLE IF EXISTS ") + table);
  }
  database_->Execute(kTables);
  database_->SetVersion(kIndexVersion);
  transaction.Commit();
}

void IndexStore::Load(const std::function<void(IndexedFile&& file)>& visit) {
  try {
    Statement rows(*database_, "SELECT path, device, inode, size, modified, verdict, problem, faces FROM files");
    while (rows.Step()) {
      IndexedFile file = FileOfRow(rows);
      if (!SetFaces(rows.Bytes(7), file)) throw StoreError(path_ + ": a file's faces are cut short", SQLITE_CORRUPT);
      visit(std::move(file));
    }
  } catch (const StoreError& error) {
    Replace(error);
  }
}

void IndexStore::Change(const std::vector<IndexedFile>& put, const std::vector<std::string>& removed,
                        int64_t revision) {
  Transaction transaction(*database_);
  Statement insert(*database_, "INSERT OR REPLACE INTO files VALUES(?,?,?,?,?,?,?,?)");
  for (const IndexedFile& file : put) {
    insert.Bind(1, file.path).Bind(2, Signed(file.identity.device)).Bind(3, Signed(file.identity.inode));
    insert.Bind(4, Signed(file.identity.size)).Bind(5, file.identity.modified);
    insert.Bind(6, static_cast<int64_t>(file.content.verdict)).Bind(7, file.content.problem);
    insert.BindBytes(8, FacesOf(file)).Run();
  }
  Statement remove(*database_, "DELETE FROM files WHERE path=?");
  for (const std::string& path : removed) remove.Bind(1, path).Run();
  Statement(*database_, "UPDATE numbers SET revision=?").Bind(1, revision).Run();
  transaction.Commit();
  revision_ = revision;
}

}  // namespace agent
