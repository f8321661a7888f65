// Files are replaced completely or not at all.
#include "platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>

#include "platform/Bookmark.h"
#include "platform/Descriptor.h"
#include "platform/FileLock.h"
#include "platform/TemporaryFile.h"
#include "support/FullDisk.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::FullDisk;
using test_support::TempFolder;

TEST(Files, AFailedWriteLeavesTheOldFileAndNothingBeside) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "old");
  const std::string source = folder.Write("source", std::string(5000, 'x'));
  for (const rlim_t size : {0, 1, 4096, 4999}) {
    const FullDisk full(size);
    EXPECT_TRUE(ReplaceFile(path, std::string(5000, 'n')));
    EXPECT_TRUE(CopyFile(source, path));
    EXPECT_EQ(TempFolder::Content(path), "old");
  }
  EXPECT_EQ(folder.Names(), (std::set<std::string>{"file", "source"}));
  EXPECT_FALSE(CopyFile(source, path));
  EXPECT_EQ(TempFolder::Content(path), std::string(5000, 'x'));
}

TEST(Files, ATemporaryFileHasNoNameThatCouldStayBehind) {
  const TempFolder folder;
  TemporaryFile file;
  {
    const test_support::ScopedVariable variable("TMPDIR", folder.Path().c_str());
    ASSERT_FALSE(file.Create());
  }
  EXPECT_TRUE(folder.Names().empty());
  ASSERT_FALSE(file.Write("some"));
  ASSERT_FALSE(file.Write("thing"));
  EXPECT_FALSE(CheckReadable(file.Path()));
  EXPECT_EQ(TempFolder::Content(file.Path()), "something");
  const std::string path = file.Path();
  file.Remove();
  EXPECT_EQ(file.Path(), "");
  EXPECT_TRUE(CheckReadable(path));
  const test_support::ScopedVariable missing("TMPDIR", (folder / "missing").c_str());
  EXPECT_TRUE(TemporaryFile().Create());
}

TEST(Files, WhatIsStagedAndNotCommittedGoesAway) {
  const TempFolder folder;
  const std::string path = folder.Write("poster.psd", "old");
  {
    StagedFile staged;
    ASSERT_FALSE(staged.StageCopy(path, path));
    EXPECT_TRUE(staged.TemporaryPath().ends_with(".psd"));
    folder.Write(std::filesystem::path(staged.TemporaryPath()).filename().string(), "changed");
    EXPECT_EQ(TempFolder::Content(path), "old");
    StagedFile second;
    ASSERT_FALSE(second.Stage(path, "second"));
    ASSERT_FALSE(second.Commit());
    EXPECT_EQ(TempFolder::Content(path), "second");
  }
  EXPECT_EQ(folder.Names(), (std::set<std::string>{"poster.psd"}));
}

// The kernel copies pieces that keep their place within a page; a buffer copies the others.
TEST(Files, PiecesOfAFileMoveToAnyPlace) {
  const TempFolder folder;
  std::string bytes;
  for (uint32_t i = 0; bytes.size() < 1'100'000; ++i) bytes += std::to_string(i * 2654435761u);
  const std::string path = folder.Write("large", bytes);
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  for (const size_t gap : {0, 150, 1'048'577}) {
    const std::string text(gap, 'g');
    StagedFile staged, tooLong;
    ASSERT_FALSE(staged.StagePieces(path, file.Get(), {{"", 0, 66}, {text, 66, bytes.size()}}));
    EXPECT_TRUE(TempFolder::Content(staged.TemporaryPath()) == bytes.substr(0, 66) + text + bytes.substr(66)) << gap;
    EXPECT_EQ(tooLong.StagePieces(path, file.Get(), {{text, 0, bytes.size() + 1}}), std::errc::io_error) << gap;
  }
}

TEST(Files, TheNewFileTakesAfterTheOldOne) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "old");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  std::filesystem::create_symlink("file", folder / "link");
  ASSERT_FALSE(ReplaceFile(folder / "link", "new"));
  struct stat info;
  ASSERT_EQ(lstat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
  EXPECT_EQ(TempFolder::Content(path), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  if (geteuid() == 0) {
    ASSERT_EQ(chown(path.c_str(), 4711, 4712), 0);
    ASSERT_FALSE(ReplaceFile(path, "newer"));
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, 4711u);
    EXPECT_EQ(info.st_gid, 4712u);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
  }
}

TEST(Files, AttributesAndNamesStay) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "the old content"), other = folder / "other name";
  ASSERT_EQ(setxattr(path.c_str(), "user.note", "kept", 4, 0), 0);
  std::filesystem::create_hard_link(path, other);
  for (const char* content : {"new", "a new content, longer than the old"}) {
    ASSERT_FALSE(ReplaceFile(path, content));
    EXPECT_EQ(TempFolder::Content(other), content);
  }
  {
    const FullDisk full(2);
    EXPECT_TRUE(ReplaceFile(path, "more than fits"));
  }
  EXPECT_EQ(TempFolder::Content(other), "a new content, longer than the old");
  std::filesystem::remove(other);
  ASSERT_FALSE(ReplaceFile(path, "alone"));
  char note[8] = {};
  EXPECT_EQ(getxattr(path.c_str(), "user.note", note, sizeof note), 4);
  EXPECT_EQ(folder.Names(), (std::set<std::string>{"file"}));
}

TEST(Files, AnInterruptedWriteIsFinished) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "half of the n");
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  const std::string name = ".unfinished-" + std::to_string(info.st_ino) + "-file";
  folder.Write(name, "new");
  EXPECT_FALSE(FinishInterruptedWrite(path));
  EXPECT_EQ(TempFolder::Content(path), "new");
  EXPECT_EQ(folder.Names(), (std::set<std::string>{"file"}));
  std::filesystem::create_symlink("elsewhere", folder / name);
  EXPECT_FALSE(FinishInterruptedWrite(path));
  EXPECT_EQ(TempFolder::Content(path), "new") << "what others may have put there is not taken";
}

// The limit on file sizes allows the journal but not the file, which leaves the same state as a kill between the two.
TEST(Files, AnInterruptedPatchIsFinishedUnlessTheFileIsAnother) {
  const TempFolder folder;
  const std::string before(6000, '-'), old(100, '-'), bytes(100, 'n');
  const std::string whole = std::string(5000, '-') + bytes + std::string(900, '-');
  const struct {
    std::string there;  // when the file is opened again
    size_t cut;         // from the end of the journal
    std::string expected;
  } rows[] = {
      {before, 0, whole},    {std::string(5000, '-') + std::string(60, 'n') + std::string(940, '-'), 0, whole},
      {before, 1, before},   {std::string(5050, '-') + "others" + std::string(944, '-'), 0, {}},
      {"short", 0, "short"},
  };
  for (const auto& row : rows) {
    const std::string path = folder.Write("file", before);
    {
      const FullDisk full(4000);
      EXPECT_EQ(PatchFile(path, 5000, old, bytes), std::errc::file_too_large);
    }
    ASSERT_EQ(folder.Names().size(), 2u);
    const std::string journal = folder / *folder.Names().begin();
    std::filesystem::resize_file(journal, std::filesystem::file_size(journal) - row.cut);
    folder.Write("file", row.there);
    EXPECT_FALSE(FinishInterruptedWrite(path));
    EXPECT_EQ(TempFolder::Content(path), row.expected.empty() ? row.there : row.expected);
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"file"}));
  }
  const std::string path = folder.Write("file", before);
  EXPECT_EQ(PatchFile(path, 4990, bytes, old), std::errc::operation_canceled);
  EXPECT_FALSE(PatchFile(path, 5000, old, bytes));
  EXPECT_EQ(TempFolder::Content(path), whole);
}

TEST(Files, TheSystemsLimitOfFileSizesEndsNoProcess) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "old");
  const FullDisk full(2);
  std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(ReplaceFile(path, "more than fits"), std::errc::file_too_large);
  EXPECT_EQ(TempFolder::Content(path), "old");
}

TEST(Files, WhatIsNoFileIsRefusedWithoutWaiting) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  folder.Write("folder/file", "");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  const struct {
    std::string path;
    std::errc error;
  } rows[] = {{folder / "missing", std::errc::no_such_file_or_directory},
              {folder / "dangling", std::errc::no_such_file_or_directory},
              {folder / "folder/file/below", std::errc::not_a_directory},
              {folder / "folder", std::errc::is_a_directory},
              {folder / "pipe", std::errc::not_supported},
              {"/dev/zero", std::errc::not_supported}};
  for (const auto& row : rows) {
    std::string content = "untouched";
    EXPECT_EQ(ReadFile(row.path, content), row.error) << row.path;
    EXPECT_EQ(content, "untouched");
    EXPECT_EQ(CheckReadable(row.path), row.error);
    EXPECT_EQ(CopyFile(row.path, folder / "copy"), row.error);
  }
  EXPECT_FALSE(FileExists(folder / "copy"));
  for (const char* name : {"folder", "pipe"}) EXPECT_TRUE(ReplaceFile(folder / name, "x")) << name;
}

TEST(Files, OneLargerThanTheMemoryIsRefused) {
  const TempFolder folder;
  const std::string path = folder.Write("large", "");
  ASSERT_EQ(truncate(path.c_str(), off_t{1} << 43), 0);
  std::string content = "untouched";
  EXPECT_EQ(ReadFile(path, content), std::errc::file_too_large);
  EXPECT_EQ(content, "untouched");
}

TEST(Files, MovingNeverReplaces) {
  const TempFolder folder;
  folder.Write("a", "a");
  folder.Write("b", "b");
  EXPECT_EQ(MoveFile(folder / "a", folder / "b"), std::errc::file_exists);
  EXPECT_EQ(TempFolder::Content(folder / "b"), "b");
  EXPECT_FALSE(MoveFile(folder / "a", folder / "c"));
  EXPECT_EQ(folder.Names(), (std::set<std::string>{"b", "c"}));
}

TEST(Files, FoldersAreMadeWithTheirMode) {
  const TempFolder folder;
  folder.Write("file", "");
  const std::string deep = folder / "one/two/three";
  EXPECT_FALSE(MakeFolder(deep + "/", 0700));
  struct stat info;
  ASSERT_EQ(stat(deep.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0700u);
  EXPECT_FALSE(MakeFolder(folder / "one/two", 0700)) << "one that is there is no error";
  for (const char* name : {"file", "file/below"}) EXPECT_TRUE(MakeFolder(folder / name, 0700));
  std::error_code error;
  EXPECT_TRUE(OpenPrivateFolder(deep, error));
  ASSERT_EQ(chmod(deep.c_str(), 0710), 0);
  EXPECT_FALSE(OpenPrivateFolder(deep, error));
  EXPECT_EQ(error, std::errc::permission_denied);
}

TEST(Files, DatesAreInNanoseconds) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "");
  constexpr uint64_t kDate = 1234567890123456789u;
  EXPECT_TRUE(SetFileModificationDate(path, kDate));
  EXPECT_EQ(GetFileModificationDate(path), kDate);
  // 0 means failure only; a file of any date has another value.
  using Clock = std::filesystem::file_time_type::clock;
  for (const auto since : {std::chrono::nanoseconds(0), std::chrono::nanoseconds(-1'500'000'001)}) {
    const auto old = Clock::from_sys(std::chrono::sys_time<std::chrono::nanoseconds>(since));
    std::filesystem::last_write_time(path, old);
    const uint64_t date = GetFileModificationDate(path);
    EXPECT_NE(date, 0u);
    EXPECT_TRUE(SetFileModificationDate(path, kDate) && SetFileModificationDate(path, date));
    EXPECT_EQ(std::filesystem::last_write_time(path), old);
  }
  EXPECT_EQ(GetFileModificationDate(folder / "missing"), 0u);
  EXPECT_FALSE(SetFileModificationDate(folder / "missing", kDate));
}

TEST(Files, TheLockIsHeldAgainstOtherProcessesAndFreeAfterADeath) {
  const TempFolder folder;
  const std::string path = folder / "preferences.plist";
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const pid_t holder = fork();
  if (holder == 0) {
    std::error_code error;
    const FileLock lock(path, &error);
    const char held = error ? 'n' : 'y';
    [[maybe_unused]] const ssize_t told = write(ends[1], &held, 1);
    pause();
    _exit(0);
  }
  char held = 0;
  ASSERT_EQ(read(ends[0], &held, 1), 1);
  EXPECT_EQ(held, 'y');
  const Descriptor probe(open((folder / ".preferences.plist.lock").c_str(), O_RDWR));
  ASSERT_TRUE(probe);
  EXPECT_NE(flock(probe.Get(), LOCK_EX | LOCK_NB), 0) << "the other process holds it";
  kill(holder, SIGKILL);
  ASSERT_EQ(waitpid(holder, nullptr, 0), holder);
  std::error_code error;
  { const FileLock lock(path, &error); }
  EXPECT_FALSE(error);
  close(ends[0]);
  close(ends[1]);

  const FileLock nowhere(folder / "missing/file", &error);
  EXPECT_EQ(error, std::errc::no_such_file_or_directory);
}

TEST(Bookmark, FindsAFileUnderItsPathOrItsNewName) {
  const TempFolder folder;
  const std::string path = folder.Write("\xE4.psd", "one"), renamed = folder / "b.psd", moved = folder / "elsewhere";
  const Data bookmark = CreateBookmark(path);
  EXPECT_EQ(ResolveBookmark(bookmark), path);
  std::filesystem::rename(path, renamed);
  EXPECT_EQ(ResolveBookmark(bookmark), renamed);
  // Another program has saved a file at the path.
  folder.Write("\xE4.psd", "two");
  EXPECT_EQ(ResolveBookmark(bookmark), path);
  std::filesystem::remove(path);
  std::filesystem::create_directory(moved);
  std::filesystem::rename(renamed, moved + "/b.psd");
  folder.Write("another.psd", "three");
  EXPECT_EQ(ResolveBookmark(bookmark), "");
  EXPECT_FALSE(CreateBookmark(folder / "absent"));
  for (const std::string_view broken : {"", "no bookmark", "<dict><key>Path</key><data>Li4=</data></dict>"}) {
    EXPECT_EQ(ResolveBookmark(Data::From(std::as_bytes(std::span(broken)))), "") << broken;
  }
}

}  // namespace
}  // namespace platform
