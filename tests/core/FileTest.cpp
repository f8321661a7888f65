#include <gmock/gmock.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "CoreFixtures.h"
#include "GFile.h"
#include "GFileSystem.h"
#include "platform/Folders.h"

namespace {

TEST(FileModes, ModeBitsBecomeTheSystemsModes) {
  const std::pair<int, const char*> cases[] = {{1, "rb"},   {33, "rb"},  {13, "rb"}, {2, "ab"},  {10, "wb"},
                                               {6, "ab"},   {14, "wb"},  {3, "r+b"}, {7, "a+b"}, {11, "w+b"},
                                               {15, "w+b"}, {35, "r+b"}, {0, "b"},   {12, "b"}};
  for (const auto& [mode, expected] : cases) EXPECT_EQ(GFile::OSGetModeString(mode), expected) << mode;
}

class FileTest : public testing::Test {
 protected:
  TempFolder mFolder;
  GFile mFile;
};

TEST_F(FileTest, RefusesWhatItCannotOpen) {
  const std::string text = mFolder.Write("text", "x");
  const std::tuple<std::string, int, TModuleErrorCode> cases[] = {{mFolder / "missing", 33, 0x01001005},
                                                                  {mFolder / "missing", 3, 0x01001005},
                                                                  {mFolder / "no/folder", 10, 0x02001004},
                                                                  {mFolder.Path(), 10, 0x02001004},
                                                                  {text, 0, 0x02001004},
                                                                  {text + std::string("\0.other", 7), 33, 0x02001004},
                                                                  {text + "/below", 33, 0x02001004},
                                                                  {"", 33, 0x01001005}};
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
  unsigned int number = 7;
  const LogRecorder log;
  const TModuleErrorCode codes[] = {
      mFile.Close(),    mFile.GetFileSize(size), mFile.SetFileSize(1), mFile.SetFilePosition(GFile::eFromStart, 0),
      mFile.Flush(),    mFile.Read(bytes),       mFile.Read(1, bytes), mFile.GetFilePosition(size),
      mFile.Write("x"), mFile.Read(number),
  };
  EXPECT_THAT(codes, testing::Each(0x01001004u));
  EXPECT_EQ(log.lines.size(), std::size(codes));
  EXPECT_TRUE(size == 7 && bytes == std::vector{'x'} && number == 7);
}

TEST_F(FileTest, ReadsFromThePositionToTheEnd) {
  ASSERT_EQ(mFile.Open(mFolder.Write("f", "abcdef"), 33), 0u);
  const std::tuple<GFile::EPosition, int, unsigned long long, const char*> cases[] = {
      {GFile::eFromStart, 2, 2, "cdef"},
      {GFile::eFromCurrent, 0, 6, ""},
      {GFile::eFromEnd, -1, 5, "f"},
      {GFile::eFromStart, 100, 100, ""}};
  for (const auto& [from, offset, expected, rest] : cases) {
    unsigned long long size = 0, position = 0;
    std::string text = "old";
    ASSERT_EQ(mFile.SetFilePosition(from, static_cast<unsigned long long>(offset)), 0u);
    ASSERT_EQ(mFile.GetFileSize(size), 0u);
    ASSERT_EQ(mFile.GetFilePosition(position), 0u);
    ASSERT_EQ(mFile.Read(text), 0u);
    EXPECT_TRUE(size == 6 && position == expected && text == rest) << position << text;
  }
}

TEST_F(FileTest, WhatCannotBeReadGivesACodeAndLeavesTheResult) {
  std::vector<char> bytes{'o'};
  ASSERT_EQ(mFile.Open(mFolder.Path(), 33), 0u);  // a folder
  EXPECT_EQ(mFile.Read(bytes), CoreErrorCodes::kError);
  ASSERT_EQ(mFile.Open(mFolder.Write("f", "abc"), 33), 0u);
  for (const unsigned long long count : {4ull, ~0ull}) EXPECT_EQ(mFile.Read(count, bytes), CoreErrorCodes::kError);
  unsigned int number = 7;
  EXPECT_EQ(mFile.Read(number), CoreErrorCodes::kError);
  EXPECT_EQ(mFile.Write("x"), CoreErrorCodes::kError);
  EXPECT_EQ(mFile.OpenResourceFork(mFolder.Path(), 33), CoreErrorCodes::kNotSupported);
  EXPECT_TRUE(bytes == std::vector{'o'} && number == 7);
}

TEST_F(FileTest, MoreThanMemoryTakesIsACode) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer ends the process where the system refuses memory";
#endif
  const std::string sparse = mFolder.Write("sparse", "");
  ASSERT_EQ(truncate(sparse.c_str(), 8ll << 30), 0);
  ASSERT_EQ(mFile.Open(sparse, 33), 0u);
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
  const rlimit low{4ull << 30, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &low), 0);
  std::string text = "old";
  EXPECT_EQ(mFile.Read(text), CoreErrorCodes::kOutOfMemory);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(text, "old");
}

TEST_F(FileTest, WritesReadsAndTruncates) {
  const std::string path = mFolder / "f";
  unsigned short small = 0;
  unsigned int number = 0;
  ASSERT_EQ(mFile.Open(path, GFile::eRead | GFile::eWrite | GFile::eTruncate), 0u);
  EXPECT_EQ(mFile.GetFileSpec(), GFileSystemSpec(path));
  EXPECT_THAT((std::vector{mFile.Write(static_cast<unsigned short>(0x1234)), mFile.Write(0x89ABCDEFu),
                           mFile.Write(std::vector{'t', 'a', 'i', 'l'}), mFile.SetFilePosition(GFile::eFromStart, 0),
                           mFile.Read(small), mFile.Write(0x11111111u),  // a write directly after a read
                           mFile.SetFilePosition(GFile::eFromStart, 2), mFile.Read(number), mFile.SetFileSize(1),
                           mFile.Flush()}),
              testing::Each(0u));
  EXPECT_TRUE(small == 0x1234 && number == 0x11111111u);
  EXPECT_EQ(TempFolder::Content(path), "\x34");
  ASSERT_EQ(mFile.Open(mFolder.Write("other", "x"), 33), 0u);  // closes the first
  ASSERT_EQ(mFile.Close(), 0u);
  EXPECT_EQ(mFile.GetFileSpec(), GFileSystemSpec());
}

TEST_F(FileTest, AFileThatShrinksOrVanishesOrFillsTheDiskGivesACode) {
  const std::string path = mFolder.Write("f", std::string(100'000, 'x'));
  std::string text;
  ASSERT_EQ(mFile.Open(path, 33), 0u);
  ASSERT_EQ(truncate(path.c_str(), 10), 0);
  unlink(path.c_str());
  EXPECT_EQ(mFile.Read(text), 0u);  // a file that is open stays open
  EXPECT_EQ(text.size(), 10u);
  EXPECT_EQ(mFile.Open(path, 33), GFileSystem::kFileNotFound);
  EXPECT_TRUE(mFile.Open("/dev/full", GFile::eWrite) == 0 && mFile.Write("x") == 0);
  EXPECT_EQ(mFile.Close(), CoreErrorCodes::kError);
  EXPECT_FALSE(mFile.IsOpen());
  EXPECT_TRUE(mFile.Open("/dev/full", GFile::eWrite) == 0 && mFile.Write("x") == 0);
  EXPECT_EQ(mFile.Open(mFolder.Write("g", "abc"), 33), 0u);  // a failed close does not affect the next file
  EXPECT_TRUE(mFile.Read(text) == 0 && text == "abc");
}

TEST_F(FileTest, TheDestructorWritesAndCloses) {
  const auto nextDescriptor = [] {
    const int descriptor = dup(0);
    close(descriptor);
    return descriptor;
  };
  const int before = nextDescriptor();
  {
    GFile file;
    EXPECT_TRUE(file.Open(mFolder / "f", GFile::eWrite) == 0 && file.Write("x") == 0);
    EXPECT_NE(nextDescriptor(), before);
  }
  EXPECT_EQ(nextDescriptor(), before);
  EXPECT_EQ(TempFolder::Content(mFolder / "f"), "x");
}

TEST(Paths, ASpecTakesWhatPeopleWrite) {
  platform::Places places;
  places.home = "/home/x";
  platform::SetPlaces(places);
  const std::string here = GFileSystem::OSGetCWD();
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},         {"\"\"", ""},      {"/a/b", "/a/b"},     {"\"/a b/c\"", "/a b/c"}, {"\"/a", "/a"},
      {"/a\"", "/a"},   {"~", "/home/x"},  {"~/x", "/home/x/x"}, {"\"~/x\"", "/home/x/x"}, {"a/b/", here + "/a/b"},
      {"/~/x", "/~/x"}, {"/\xFF", "/\xFF"}};
  for (const auto& [text, path] : cases) EXPECT_EQ(GFileSystemSpec(text).GetFullPath(), path) << text;
  GFileSystemSpec spec("/old");
  EXPECT_TRUE(spec.SetFullPath("relative") == 0x04000000 && spec.SetFullPath("") == 0);
  EXPECT_EQ(spec.GetFullPath(), "/old");
  EXPECT_EQ(GFileSystem::OSGetUsersRootDirectory(spec), 0u);
  EXPECT_EQ(spec.GetFullPath(), "/home/x");
}

TEST(Paths, Components) {
  const std::tuple<const char*, const char*, const char*> appended[] = {
      {"/a/", "/b/", "/a/b"}, {"/a", "b/c", "/a/b/c"}, {"/a//", "///", "/a//"},
      {"/a", "", "/a"},       {"/", "b", "/b"},        {"", "b", "/b"}};
  for (const auto& [path, component, result] : appended) {
    GFileSystemSpec spec(path);
    EXPECT_EQ(spec.AppendPathComponent(component), 0u);
    EXPECT_EQ(spec.GetFullPath(), result);
  }
  const struct {
    const char *path, *last, *above, *extension, *without, *extended;
    std::vector<std::string> components;
  } cases[] = {
      {"/a/b.txt", "b.txt", "/a", "txt", "/a/b", "/a/b.txt.c", {"a", "b.txt"}},
      {"/a.d/b", "b", "/a.d", "", "/a.d/b", "/a.d/b.c", {"a.d", "b"}},
      {"/a/.b", ".b", "/a", "", "/a/.b", "/a/.b.c", {"a", ".b"}},
      {"/a/b.tar.gz", "b.tar.gz", "/a", "gz", "/a/b.tar", "/a/b.tar.gz.c", {"a", "b.tar.gz"}},
      {"/a//b/", "b", "/a/", "", "/a//b/", "/a//b.c", {"a", "b"}},
      {"/a", "a", "/", "", "/a", "/a.c", {"a"}},
      {"/", "", "/", "", "/", "/", {}},
      {"", "", "", "", "", "", {}},
  };
  for (const auto& c : cases) {
    const GFileSystemSpec spec(c.path);
    GFileSystemSpec above = spec, without = spec, extended = spec;
    above.RemoveLastPathComponent();
    without.RemovePathExtension();
    EXPECT_EQ(extended.AppendPathExtension(".c"), c.components.empty() ? CoreErrorCodes::kInvalidParam : 0) << c.path;
    EXPECT_THAT((std::vector{spec.GetLastPathComponent(), above.GetFullPath(), spec.GetPathExtension(),
                             without.GetFullPath(), extended.GetFullPath()}),
                testing::ElementsAre(c.last, c.above, c.extension, c.without, c.extended));
    EXPECT_EQ(spec.GetPathComponents(), c.components);
  }
}

TEST(Paths, Subpaths) {
  const std::tuple<const char*, const char*, const char*> cases[] = {{"/a/b/c", "/a", "b/c"}, {"/a/b", "/a/", "b"},
                                                                     {"/ab", "/a", ""},       {"/a", "/a", ""},
                                                                     {"/a", "/", "a"},        {"/a", "", ""}};
  for (const auto& [path, folder, below] : cases) {
    const GFileSystemSpec spec(path);
    EXPECT_TRUE(spec.GetSubPathFromSpec(folder) == below && spec.IsSubpath(folder) == (*below != '\0'))
        << path << folder;
  }
}

TEST(Paths, TheCurrentFolderMayBeGone) {
  const std::string before = GFileSystem::OSGetCWD();
  ASSERT_EQ(chdir(TempFolder().Path().c_str()), 0);
  EXPECT_EQ(GFileSystem::OSGetCWD(), "");
  EXPECT_TRUE(GFileSystemSpec("a").IsEmpty());
  ASSERT_EQ(chdir(before.c_str()), 0);
}

TEST(Paths, WithoutAVariableTheHomeIsTheAccounts) {
  setenv("HOME", "", 1);
  platform::SetPlaces({});
  GFileSystemSpec spec;
  EXPECT_EQ(spec.SetFullPath("~/x"), 0u);
  EXPECT_EQ(spec.GetFullPath(), getpwuid(geteuid())->pw_dir + std::string("/x"));
}

TEST(Paths, AnUnknownHomeIsReportedAndLeavesThePath) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become a user without an account";
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNoAccount = 54321;
    setenv("HOME", "", 1);
    if (setuid(kNoAccount) != 0) _exit(1);
    platform::SetPlaces({});
    GFileSystemSpec spec("/old");
    EXPECT_EQ(spec.SetFullPath("~/x"), 0x05000000u);
    EXPECT_EQ(GFileSystem::OSGetUsersRootDirectory(spec), 0x05000000u);
    EXPECT_EQ(spec.GetFullPath(), "/old");
    EXPECT_TRUE(GFileSystemSpec("~/x").IsEmpty());
    std::fflush(stdout);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
