#include <gmock/gmock.h>
#include <unistd.h>

#include "CoreFixtures.h"
#include "GFile.h"
#include "GFileSystem.h"
#include "platform/Folders.h"

namespace {

constexpr int kReadBinary = GFile::eRead | GFile::eBinary;

TEST(FileModes, ModeBitsBecomeTheSystemsModes) {
  const std::pair<int, const char*> cases[] = {{1, "rb"},   {33, "rb"},  {1 | 4 | 8, "rb"}, {2, "ab"},  {10, "wb"},
                                               {6, "ab"},   {14, "wb"},  {3, "r+b"},        {7, "a+b"}, {11, "w+b"},
                                               {15, "w+b"}, {35, "r+b"}, {0, "b"},          {12, "b"}};
  for (const auto& [mode, expected] : cases) EXPECT_EQ(GFile::OSGetModeString(mode), expected) << mode;
  EXPECT_EQ(GFile::GetModeString(0), "");
}

class FileTest : public testing::Test {
 protected:
  TemporaryFolder mFolder;
  GFile mFile;
};

TEST_F(FileTest, RefusesWhatItCannotOpen) {
  const std::string text = mFolder.Write("text", "x");
  const std::tuple<std::string, int, TModuleErrorCode> cases[] = {
      {mFolder.Path() + "/missing", kReadBinary, 0x01001005},
      {mFolder.Path() + "/missing", 3, 0x01001005},
      {mFolder.Path() + "/no/folder", 10, 0x02001004},
      {mFolder.Path(), kReadBinary, 0x02001004},
      {mFolder.Path(), 10, 0x02001004},
      {text, 0, 0x02001004},
      {text + std::string("\0.other", 7), kReadBinary, 0x02001004},
      {text + "/below", kReadBinary, 0x02001004},
      {"", kReadBinary, 0x01001005},
  };
  for (const auto& [path, mode, code] : cases) {
    const LogRecorder log;
    EXPECT_EQ(mFile.Open(path, mode), code) << path;
    EXPECT_FALSE(mFile.IsOpen());
    EXPECT_EQ(log.lines.size(), 1u) << path;
  }
}

TEST_F(FileTest, EveryOperationOnAClosedFileFailsOnceAndWritesNothingOut) {
  unsigned long long size = 7;
  std::vector<char> bytes{'x'};
  std::vector<unsigned char> unsignedBytes{'x'};
  std::string text = "x";
  unsigned short small = 7;
  unsigned int number = 7;
  const LogRecorder log;
  const TModuleErrorCode codes[] = {
      mFile.Close(),       mFile.GetFileSize(size), mFile.SetFileSize(1), mFile.SetFilePosition(GFile::eFromStart, 0),
      mFile.Read(bytes),   mFile.Read(text),        mFile.Read(1, bytes), mFile.GetFilePosition(size),
      mFile.Read(small),   mFile.Read(number),      mFile.Write("x"),     mFile.Write(small),
      mFile.Write(number), mFile.Write(bytes),      mFile.Flush(),        mFile.Read(unsignedBytes),
  };
  EXPECT_THAT(codes, testing::Each(0x01001004u));
  EXPECT_EQ(log.lines.size(), std::size(codes));
  EXPECT_TRUE(size == 7 && bytes == std::vector{'x'} && text == "x" && small == 7 && number == 7);
  EXPECT_EQ(mFile.OpenResourceFork(mFolder.Path(), kReadBinary), CoreErrorCodes::kNotSupported);
}

TEST_F(FileTest, ReadsFromThePositionToTheEnd) {
  ASSERT_EQ(mFile.Open(mFolder.Write("f", "abcdef"), kReadBinary), 0u);
  unsigned long long size = 0, position = 0;
  std::vector<char> bytes;
  std::string text;
  ASSERT_EQ(mFile.Read(2, bytes), 0u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "ab");
  ASSERT_EQ(mFile.GetFileSize(size), 0u);
  ASSERT_EQ(mFile.GetFilePosition(position), 0u);
  EXPECT_EQ(size, 6u);
  EXPECT_EQ(position, 2u);
  ASSERT_EQ(mFile.Read(text), 0u);
  EXPECT_EQ(text, "cdef");
  ASSERT_EQ(mFile.Read(bytes), 0u);
  EXPECT_TRUE(bytes.empty());
  ASSERT_EQ(mFile.SetFilePosition(GFile::eFromEnd, static_cast<unsigned long long>(-1)), 0u);
  ASSERT_EQ(mFile.Read(text), 0u);
  EXPECT_EQ(text, "f");
  ASSERT_EQ(mFile.SetFilePosition(GFile::eFromStart, 100), 0u);
  ASSERT_EQ(mFile.Read(text), 0u);
  EXPECT_EQ(text, "");
}

TEST_F(FileTest, AskingForMoreThanThereIsFailsWithoutTakingMemory) {
  ASSERT_EQ(mFile.Open(mFolder.Write("f", "abc"), kReadBinary), 0u);
  std::vector<char> bytes{'o'};
  EXPECT_EQ(mFile.Read(4, bytes), CoreErrorCodes::kError);
  EXPECT_EQ(mFile.Read(~0ull, bytes), CoreErrorCodes::kError);
  EXPECT_EQ(bytes, std::vector{'o'});
  unsigned int number = 7;
  EXPECT_EQ(mFile.Read(number), CoreErrorCodes::kError);
  EXPECT_EQ(number, 7u);
  EXPECT_EQ(mFile.Write("x"), CoreErrorCodes::kError);
}

TEST_F(FileTest, WritesReadsAndTruncates) {
  const std::string path = mFolder.Path() + "/f";
  ASSERT_EQ(mFile.Open(path, GFile::eRead | GFile::eWrite | GFile::eTruncate), 0u);
  EXPECT_EQ(mFile.GetFileSpec(), GFileSystemSpec(path));
  ASSERT_EQ(mFile.Write(static_cast<unsigned short>(0x1234)), 0u);
  ASSERT_EQ(mFile.Write(0x89ABCDEFu), 0u);
  ASSERT_EQ(mFile.Write(std::vector{'t', 'a', 'i', 'l'}), 0u);
  ASSERT_EQ(mFile.SetFilePosition(GFile::eFromStart, 0), 0u);
  unsigned short small = 0;
  unsigned int number = 0;
  ASSERT_EQ(mFile.Read(small), 0u);
  ASSERT_EQ(mFile.Write(0x11111111u), 0u);  // straight after a read
  ASSERT_EQ(mFile.SetFilePosition(GFile::eFromStart, 2), 0u);
  ASSERT_EQ(mFile.Read(number), 0u);
  EXPECT_EQ(small, 0x1234);
  EXPECT_EQ(number, 0x11111111u);
  ASSERT_EQ(mFile.SetFileSize(1), 0u);
  ASSERT_EQ(mFile.Flush(), 0u);
  EXPECT_EQ(TemporaryFolder::Read(path), "\x34");
  ASSERT_EQ(mFile.Open(mFolder.Write("other", "x"), kReadBinary), 0u);  // closes the first
  ASSERT_EQ(mFile.Close(), 0u);
  EXPECT_EQ(mFile.GetFileSpec(), GFileSystemSpec());
  EXPECT_EQ(mFile.Close(), GFile::kFileNotOpen);
}

TEST_F(FileTest, AFileThatShrinksOrVanishesGivesACode) {
  const std::string path = mFolder.Write("f", std::string(100'000, 'x'));
  ASSERT_EQ(mFile.Open(path, kReadBinary), 0u);
  unlink(path.c_str());
  std::string text;
  EXPECT_EQ(mFile.Read(text), 0u);  // an open file stays
  EXPECT_EQ(text.size(), 100'000u);
  EXPECT_EQ(mFile.Open(path, kReadBinary), GFile::kFileNotFound);

  const std::string shrinking = mFolder.Write("g", std::string(100'000, 'x'));
  ASSERT_EQ(mFile.Open(shrinking, kReadBinary), 0u);
  ASSERT_EQ(truncate(shrinking.c_str(), 10), 0);
  EXPECT_EQ(mFile.Read(text), 0u);
  EXPECT_EQ(text.size(), 10u);
  EXPECT_EQ(mFile.Open("/dev/full", GFile::eWrite), 0u);
  EXPECT_EQ(mFile.Write("x"), 0u);
  EXPECT_EQ(mFile.Close(), CoreErrorCodes::kError);
  EXPECT_FALSE(mFile.IsOpen());
}

TEST(Paths, ASpecTakesWhatPeopleWrite) {
  const std::string home = platform::GetPlaces().home, here = GFileSystem::OSGetCWD();
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},         {"\"\"", ""},       {"/a/b", "/a/b"},     {"\"/a b/c\"", "/a b/c"}, {"\"/a", "/a"},
      {"/a\"", "/a"},   {"~", home},        {"~/x", home + "/x"}, {"\"~/x\"", home + "/x"}, {"a/b/", here + "/a/b"},
      {"/~/x", "/~/x"}, {"/\xFF", "/\xFF"},
  };
  for (const auto& [text, path] : cases) EXPECT_EQ(GFileSystemSpec(text).GetFullPath(), path) << text;
}

TEST(Paths, SetFullPathChangesOnSuccessOnly) {
  GFileSystemSpec spec("/old");
  const std::tuple<const char*, TModuleErrorCode, const char*> cases[] = {
      {"relative", CoreErrorCodes::kInvalidParam, "/old"}, {"", 0, "/old"}, {"/new/", 0, "/new/"}};
  for (const auto& [path, code, result] : cases) {
    EXPECT_EQ(spec.SetFullPath(path), code);
    EXPECT_EQ(spec.GetFullPath(), result);
  }
}

TEST(Paths, ComponentsAndExtensions) {
  const std::tuple<const char*, const char*, const char*> appended[] = {
      {"/a/", "/b/", "/a/b"}, {"/a", "b/c", "/a/b/c"}, {"/a//", "///", "/a//"},
      {"/a", "", "/a"},       {"/", "b", "/b"},        {"", "b", "/b"}};
  for (const auto& [path, component, result] : appended) {
    GFileSystemSpec spec(path);
    EXPECT_EQ(spec.AppendPathComponent(component), 0u);
    EXPECT_EQ(spec.GetFullPath(), result);
  }
  struct {
    const char *path, *last, *above, *extension, *without;
  } const cases[] = {
      {"/a/b.txt", "b.txt", "/a", "txt", "/a/b"},
      {"/a.d/b", "b", "/a.d", "", "/a.d/b"},
      {"/a/.b", ".b", "/a", "", "/a/.b"},
      {"/a/b.tar.gz", "b.tar.gz", "/a", "gz", "/a/b.tar"},
      {"/a/b/", "b", "/a", "", "/a/b/"},
      {"/a", "a", "/", "", "/a"},
      {"/", "", "/", "", "/"},
      {"", "", "", "", ""},
  };
  for (const auto& c : cases) {
    GFileSystemSpec spec(c.path), above(c.path);
    EXPECT_EQ(spec.GetLastPathComponent(), c.last) << c.path;
    EXPECT_EQ(spec.GetPathExtension(), c.extension) << c.path;
    above.RemoveLastPathComponent();
    EXPECT_EQ(above.GetFullPath(), c.above) << c.path;
    spec.RemovePathExtension();
    EXPECT_EQ(spec.GetFullPath(), c.without) << c.path;
  }
  GFileSystemSpec spec("/a/b");
  spec.AppendPathExtension(".conf");
  EXPECT_EQ(spec.GetFullPath(), "/a/b.conf");
  EXPECT_THAT(spec.GetPathComponents(), testing::ElementsAre("a", "b.conf"));
}

TEST(Paths, Subpaths) {
  const std::tuple<const char*, const char*, const char*> cases[] = {{"/a/b/c", "/a", "b/c"}, {"/a/b", "/a/", "b"},
                                                                     {"/ab", "/a", ""},       {"/a", "/a", ""},
                                                                     {"/a", "/", "a"},        {"/a", "", ""}};
  for (const auto& [path, folder, below] : cases) {
    EXPECT_EQ(GFileSystemSpec(path).GetSubPathFromSpec(folder), below) << path << " " << folder;
    EXPECT_EQ(GFileSystemSpec(path).IsSubpath(folder), *below != '\0');
  }
}

TEST(Paths, TheCurrentFolderMayBeGone) {
  const std::string before = GFileSystem::OSGetCWD();
  {
    const TemporaryFolder folder;
    ASSERT_EQ(chdir(folder.Path().c_str()), 0);
  }
  EXPECT_EQ(GFileSystem::OSGetCWD(), "");
  EXPECT_TRUE(GFileSystemSpec("a").IsEmpty());
  ASSERT_EQ(chdir(before.c_str()), 0);
}

TEST(Paths, QueriesOfTheFileSystem) {
  EXPECT_EQ(GFileSystem::OSGetPathSeparator(), "/");
  EXPECT_TRUE(GFileSystem::OSIsPartialPath("a"));
  EXPECT_FALSE(GFileSystem::OSIsPartialPath("/a"));
  EXPECT_FALSE(GFileSystem::OSIsValidFullPath(""));
  const TemporaryFolder folder;
  EXPECT_TRUE(GFileSystem::OSDoesFileExist(folder.Write("f", "")));
  EXPECT_FALSE(GFileSystem::OSDoesFileExist(folder.Path() + "/g"));
  platform::Places places = platform::GetPlaces();
  GFileSystemSpec spec;
  EXPECT_EQ(GFileSystem::OSGetUsersRootDirectory(spec), 0u);
  EXPECT_EQ(spec.GetFullPath(), places.home);
}

}  // namespace
