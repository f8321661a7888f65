// The two databases: one may be lost, the other never.
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

#include "agent/store/AgentLog.h"
#include "agent/store/IndexStore.h"
#include "agent/store/UserStore.h"
#include "support/DebianFonts.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace agent;
using test_support::TempFolder;
using testing::ElementsAre;

const char* const kOddNames[] = {"Let's Eat", "A & B", "semi;colon--", "100%", "name\"quoted\"", "\xC3\x84hnlich"};

IndexedFile MakeFile(const std::string& path, uint64_t inode, const std::string& name) {
  IndexedFile file;
  file.path = path;
  file.identity = {0xFFFFFFFFFFFFFFF0u, inode, 5000000000u, 1700000000123456789};
  file.content.verdict = FontVerdict::kFont;
  FontFace face;
  face.postScriptName = name;
  face.family = "Family of " + name;
  face.kind = "OpenType - PS";
  face.checksum = 0xFFFFFFFF;
  face.glyphsureChecksum = 0x80000001;
  file.content.faces = {face, face};
  file.content.faces[1].faceIndex = 1;
  file.content.faces[1].coverage = FontCoverage{1, 2};
  file.content.faces[1].traits = {700, 3, FontDesign::kSlab, true, false, true, false};
  file.numbers = {{1, 0, 1700000000, 2}, {0x7FFFFFFF, 0, 0, 3}};
  return file;
}

std::vector<IndexedFile> FilesOf(IndexStore& store) {
  std::vector<IndexedFile> files;
  store.Load([&](IndexedFile&& file) { files.push_back(std::move(file)); });
  return files;
}

void ExpectNoReport(const std::string& line) { ADD_FAILURE() << line; }

TEST(IndexStore, GivesBackWhatWasPut) {
  const TempFolder folder;
  std::vector<IndexedFile> files;
  uint64_t inode = 0xFFFFFFFFFFFFFF00u;
  for (const char* name : kOddNames) files.push_back(MakeFile(std::string("/fonts/") + name, inode++, name));
  files[1].content = {FontVerdict::kBroken, {}, "is empty"};
  {
    IndexStore store(folder / "index.db", ExpectNoReport);
    store.Change(files, {}, 1);
    store.Change({MakeFile("/fonts/removed", 3, "Removed")}, {}, 2);
    store.Change({files[0]}, {"/fonts/removed"}, -5);  // the file in place of itself
  }
  IndexStore store(folder / "index.db", ExpectNoReport);
  EXPECT_EQ(store.Revision(), -5);
  const std::vector<IndexedFile> loaded = FilesOf(store);
  ASSERT_EQ(loaded.size(), files.size());
  for (const IndexedFile& file : files) {
    const auto found = std::find_if(loaded.begin(), loaded.end(), [&](const auto& it) { return it.path == file.path; });
    ASSERT_NE(found, loaded.end()) << file.path;
    EXPECT_EQ(found->identity, file.identity);
    EXPECT_EQ(found->content.verdict, file.content.verdict);
    EXPECT_EQ(found->content.problem, file.content.problem);
    EXPECT_EQ(found->content.faces, file.content.faces);
    ASSERT_EQ(found->numbers.size(), found->content.faces.size());
    for (size_t i = 0; i < found->numbers.size(); ++i) {
      const FontNumber &is = found->numbers[i], &was = file.numbers[i];
      EXPECT_EQ(std::tie(is.id, is.added, is.familyID), std::tie(was.id, was.added, was.familyID));
    }
  }
}

TEST(IndexStore, AnotherVersionIsDroppedAndADamagedFileMovedAside) {
  const TempFolder folder;
  const std::string path = folder / "index.db";
  IndexStore(path, ExpectNoReport).Change({MakeFile("/fonts/a", 1, "A"), MakeFile("/fonts/b", 2, "B")}, {}, 1);
  // A value that is cut short costs the files from there on.
  std::string report;
  Database(path).Execute("UPDATE files SET faces=substr(faces, 1, length(faces) - 1) WHERE path='/fonts/b'");
  {
    IndexStore damaged(path, [&](const std::string& line) { report = line; });
    EXPECT_EQ(FilesOf(damaged).size(), 1u);
    EXPECT_THAT(report, testing::HasSubstr("moved aside"));
    EXPECT_TRUE(FilesOf(damaged).empty());
    damaged.Change({MakeFile("/fonts/a", 1, "A")}, {}, 1);
  }
  Database(path).SetVersion(99);
  {
    IndexStore other(path, ExpectNoReport);
    EXPECT_TRUE(FilesOf(other).empty());
    EXPECT_EQ(other.Revision(), 0);
  }

  const std::string garbage = "this was a database once, " + std::string(5000, '?');
  fs::remove(path);
  folder.Write("index.db", garbage);
  report.clear();
  IndexStore(path, [&](const std::string& line) { report = line; }).Change({MakeFile("/fonts/b", 2, "B")}, {}, 1);
  EXPECT_THAT(report, testing::HasSubstr("moved aside"));
  EXPECT_EQ(debian_fonts::Bytes(path + ".damaged"), garbage);
  IndexStore again(path, ExpectNoReport);
  EXPECT_EQ(FilesOf(again).size(), 1u);
}

FontFace FaceNamed(const std::string& name, int32_t index = 0) {
  FontFace face;
  face.postScriptName = name;
  face.faceIndex = index;
  return face;
}

FileIdentity IdentityOf(const std::string& path) {
  FileIdentity identity;
  std::string problem;
  EXPECT_TRUE(FileIdentity::Of(path, identity, problem)) << problem;
  return identity;
}

TEST(UserStore, FontsKeepTheirNumbers) {
  const TempFolder folder;
  const std::string first = folder.Write("first.ttf", "1");
  const std::string second = folder.Write("second.ttf", "2");
  uint32_t id = 0, faceID = 0, otherID = 0;
  {
    UserStore store(folder / "user.db");
    id = store.FontID(first, FaceNamed("A"), IdentityOf(first)).id;
    faceID = store.FontID(first, FaceNamed("B", 1), IdentityOf(first)).id;
    otherID = store.FontID(second, FaceNamed("A"), IdentityOf(second)).id;
  }
  EXPECT_NE(id, 0u);
  EXPECT_EQ((std::set{id, faceID, otherID}.size()), 3u);
  UserStore store(folder / "user.db");
  EXPECT_EQ(store.FontID(first, FaceNamed("A"), IdentityOf(first)).id, id);

  fs::rename(first, folder / "moved.ttf");
  EXPECT_EQ(store.FontID(folder / "moved.ttf", FaceNamed("A"), IdentityOf(folder / "moved.ttf")).id, id);
  // A second name of an existing file is a second font, and so is another file with a reused inode.
  fs::create_hard_link(second, folder / "second name.ttf");
  EXPECT_NE(store.FontID(folder / "second name.ttf", FaceNamed("A"), IdentityOf(second)).id, otherID);
  EXPECT_NE(store.FontID(folder / "reused.ttf", FaceNamed("C"), IdentityOf(folder / "moved.ttf")).id, id);
}

// Clients keep the record of an ID for good, so another content has another ID; what the user decided follows the name.
TEST(UserStore, ANewVersionInItsPlaceIsANewFontWithTheOldOnesSets) {
  const TempFolder folder;
  UserStore store(folder / "user.db");
  FontFace face = FaceNamed("A");
  face.version = "1.0";
  const uint32_t first = store.FontID("/a.ttf", face, {1, 2, 3, 4}).id;
  store.SetActivations({first}, 4);
  store.CreateSet("Mine", 1, {first});
  Database database(folder / "user.db");
  database.Execute("INSERT INTO panel_clicks VALUES(" + std::to_string(first) + ",3)");
  EXPECT_EQ(store.FontID("/a.ttf", face, {1, 5, 6, 7}).id, first) << "the same content in another file";

  const auto expectUsed = [&](uint32_t id) {
    EXPECT_EQ(store.Activations(), (std::map<uint32_t, int32_t>{{id, 4}}));
    EXPECT_THAT(store.Sets()[0].fontIDs, ElementsAre(id));
    Statement clicks(database, "SELECT font FROM panel_clicks");
    EXPECT_TRUE(clicks.Step() && clicks.Integer(0) == id && !clicks.Step());
  };
  std::function<void(FontFace&)> const changes[] = {
      [](FontFace& it) { it.version = "1.1"; }, [](FontFace& it) { it.checksum = 1; },
      [](FontFace& it) { it.glyphsureChecksum = 2; }, [](FontFace& it) { it.kerningChecksum = 3; }};
  uint32_t last = first;
  for (const auto& change : changes) {
    change(face);
    const FontNumber number = store.FontID("/a.ttf", face, {1, 5, 6, 8});
    EXPECT_NE(number.id, last);
    EXPECT_EQ(number.former, last);
    expectUsed(last = number.id);
  }
  const FontNumber other = store.FontID("/a.ttf", FaceNamed("B"), {1, 5, 6, 9});
  EXPECT_EQ(other.former, 0u);
  expectUsed(last);
  EXPECT_EQ(store.FontID("/restored.ttf", face, {1, 9, 9, 9}).id, last) << "a font that comes back";
}

TEST(UserStore, SetsAndActivationsOutliveTheProgram) {
  const TempFolder folder;
  std::vector<uint32_t> fonts;
  {
    UserStore store(folder / "user.db");
    for (const char* name : {"A", "B", "C"}) fonts.push_back(store.FontID(name, FaceNamed(name), {}).id);
    for (const char* name : kOddNames) store.CreateSet(name, 1, {fonts[2], fonts[0], fonts[2]});
    EXPECT_TRUE(store.AddToSets({1, 2}, {fonts[1], fonts[0]}));
    EXPECT_FALSE(store.AddToSets({3, 4711}, {fonts[1]}));  // 3 has not changed
    store.SetActivations(fonts, 4);
    store.SetActivations({fonts[0]}, 1);
    store.RemoveActivations({fonts[1]});
  }
  UserStore store(folder / "user.db");
  const std::vector<FontSet> sets = store.Sets();
  ASSERT_EQ(sets.size(), std::size(kOddNames));
  for (size_t i = 0; i < sets.size(); ++i) EXPECT_EQ(sets[i].name, kOddNames[i]);
  EXPECT_THAT(sets[0].fontIDs, ElementsAre(fonts[2], fonts[0], fonts[1]));
  EXPECT_THAT(sets[2].fontIDs, ElementsAre(fonts[2], fonts[0]));
  EXPECT_EQ(store.Activations(), (std::map<uint32_t, int32_t>{{fonts[0], 1}, {fonts[2], 4}}));
}

TEST(AgentLog, KeepsTheOldFileOnceItIsLong) {
  const TempFolder folder;
  const std::string path = folder.Write("agent.log", "short\n");
  EXPECT_FALSE(AgentLog().Open(path));
  EXPECT_FALSE(fs::exists(path + ".old"));
  folder.Write("agent.log", std::string(AgentLog::kLongestFile + 1, 'x'));
  AgentLog log;
  EXPECT_FALSE(log.Open(path));
  log.Write("first line");
  EXPECT_EQ(fs::file_size(path + ".old"), AgentLog::kLongestFile + 1);
  EXPECT_LT(fs::file_size(path), 100u);
}

TEST(Database, IsBroughtForwardByTheStepsThatItLacks) {
  const TempFolder folder;
  const char* const steps[] = {"CREATE TABLE a(n); INSERT INTO a VALUES(1)", "ALTER TABLE a ADD m DEFAULT 7",
                               "UPDATE a SET n = n + 1; INSERT INTO nowhere VALUES(1)"};
  Database database(folder / "user.db");
  database.Migrate(std::span(steps, 1));
  database.Execute("INSERT INTO a VALUES(5)");
  const auto sum = [&](const char* sql) {
    Statement statement(database, sql);
    return statement.Step() ? statement.Integer(0) : -1;
  };
  database.Migrate(std::span(steps, 2));
  database.Migrate(std::span(steps, 2));
  EXPECT_EQ(database.Version(), 2);
  EXPECT_EQ(sum("SELECT SUM(n * m) FROM a"), 42);
  EXPECT_THROW(database.Migrate(steps), StoreError);
  EXPECT_EQ(database.Version(), 2);
  EXPECT_EQ(sum("SELECT SUM(n) FROM a"), 6) << "a step that fails is undone";
}

// A database of the first version. Every later version migrates it without loss.
constexpr const char* kFirstVersion = R"(
CREATE TABLE fonts(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id > 0 AND id < 2147483648), path TEXT NOT NULL,
                   face INTEGER NOT NULL, device INTEGER, inode INTEGER, name TEXT, UNIQUE(path, face));
CREATE INDEX fonts_by_file ON fonts(device, inode, face);
CREATE TABLE families(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), name TEXT NOT NULL UNIQUE);
CREATE TABLE activations(font INTEGER PRIMARY KEY REFERENCES fonts(id), state INTEGER NOT NULL);
CREATE TABLE sets(id INTEGER PRIMARY KEY AUTOINCREMENT CHECK(id < 2147483648), workgroup INTEGER NOT NULL,
                  name TEXT NOT NULL);
CREATE TABLE set_fonts(set_id INTEGER NOT NULL REFERENCES sets(id), font INTEGER NOT NULL REFERENCES fonts(id),
                       place INTEGER NOT NULL, PRIMARY KEY(set_id, font)) WITHOUT ROWID;
INSERT INTO fonts VALUES(7, '/fonts/a.otf', 0, 1, 2, 'A');
INSERT INTO families VALUES(3, 'Family');
INSERT INTO activations VALUES(7, 4);
INSERT INTO sets VALUES(5, 1, 'Mine');
INSERT INTO set_fonts VALUES(5, 7, 1);
PRAGMA user_version=1;)";

TEST(UserStore, AnOlderFileIsBroughtForward) {
  const TempFolder folder;
  Database(folder / "user.db").Execute(kFirstVersion);
  UserStore store(folder / "user.db");
  EXPECT_EQ(store.FontID("/fonts/a.otf", FaceNamed("A"), {}).id, 7u);
  EXPECT_EQ(store.FamilyID("Family"), 3u);
  EXPECT_EQ(store.Activations(), (std::map<uint32_t, int32_t>{{7, 4}}));
  ASSERT_EQ(store.Sets().size(), 1u);
  EXPECT_THAT(store.Sets()[0].fontIDs, ElementsAre(7));
}

TEST(UserStore, WhatItCanNotReadItDoesNotTouch) {
  const TempFolder folder;
  const std::string damaged = folder.Write("damaged.db", std::string(3000, '?'));
  EXPECT_THROW(UserStore store(damaged), StoreError);
  EXPECT_EQ(debian_fonts::Bytes(damaged), std::string(3000, '?'));

  {
    UserStore store(folder / "later.db");
    store.CreateSet("Mine", 1, {});
  }
  Database(folder / "later.db").SetVersion(1000);
  try {
    UserStore store(folder / "later.db");
    ADD_FAILURE() << "a later version was taken";
  } catch (const StoreError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("later version"));
    EXPECT_FALSE(error.IsDamage());
  }
  Database later(folder / "later.db");
  EXPECT_EQ(later.Version(), 1000);
  Statement sets(later, "SELECT COUNT(*) FROM sets");
  ASSERT_TRUE(sets.Step());
  EXPECT_EQ(sets.Integer(0), 1);
}

}  // namespace
