// Other programs, sockets between them, and other services of the desktop.
#include "platform/Process.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <sstream>
#include <thread>

#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/LocalSocket.h"
#include "platform/PropertyList.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::TempFolder;

class ProcessTest : public testing::Test {
 protected:
  ProcessTest() : former_(GetPlaces()) {
    Places places = former_;
    places.runtime = folder_ / "runtime";
    SetPlaces(places);
  }
  ~ProcessTest() override { SetPlaces(former_); }

  TempFolder folder_;
  const Places former_;
};

TEST_F(ProcessTest, AnAnnouncedProgramIsSeenUntilItsAnnouncementGoes) {
  EXPECT_TRUE(RunningApplications().empty());
  std::shared_ptr<Announcement> announcement = AnnounceApplication("Tester", "com.example.tester");
  ASSERT_TRUE(announcement);
  const std::vector<RunningApplication> seen = RunningApplications();
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_TRUE(seen[0].localizedName == UniqueString("Tester")) << "equal names are one object";
  EXPECT_FALSE(seen[0].localizedName == String::FromUTF8("Tester"));
  for (const std::string& text : {std::string("Prüfer"), std::string(65, 'a')}) {
    EXPECT_FALSE(UniqueString(text) == UniqueString(text)) << text;
  }
  EXPECT_EQ(seen[0].identifier, "com.example.tester");
  EXPECT_EQ(seen[0].processID, getpid());
  EXPECT_EQ(seen[0].executablePath, std::filesystem::read_symlink("/proc/self/exe"));
  announcement.reset();
  EXPECT_TRUE(RunningApplications().empty());
}

TEST_F(ProcessTest, EntriesThatNoLivingProgramMadeAreRemoved) {
  const auto announcement = AnnounceApplication("Tester", "com.example.tester");
  ASSERT_TRUE(announcement);
  const std::string mine = folder_ / ("runtime/applications/" + std::to_string(getpid()));
  const std::string entry = TempFolder::Content(mine);
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string changed = entry;
    return changed.replace(changed.find(from), from.size(), to);  // throws if it is not there
  };
  const std::string pid = ">" + std::to_string(getpid()) + "<";
  const std::string stale[] = {
      "",
      "no property list",
      "<plist><dict/></plist>",
      with(pid, ">2147483647<"),                                                      // no such process
      with("<key>StartTime</key>\n\t<string>", "<key>StartTime</key>\n\t<string>9"),  // an earlier one
      with("platform_tests", "another_program"),
      with(pid, ">-1<")};
  for (const std::string& text : stale) {
    folder_.Write("runtime/applications/77", text);
    EXPECT_EQ(RunningApplications().size(), 1u) << text;
    EXPECT_FALSE(FileExists(folder_ / "runtime/applications/77")) << text;
  }
  EXPECT_TRUE(FileExists(mine));
}

TEST_F(ProcessTest, AProgramWhoseFileWasReplacedStillRuns) {
  const std::string program = folder_ / "program";
  std::filesystem::copy_file("/bin/sleep", program);
  char name[] = "program", seconds[] = "1000";
  char* const arguments[] = {name, seconds, nullptr};
  pid_t pid = 0;
  ASSERT_EQ(posix_spawn(&pid, program.c_str(), nullptr, nullptr, arguments, environ), 0);
  const std::string stat = TempFolder::Content("/proc/" + std::to_string(pid) + "/stat");
  std::istringstream fields(stat.substr(stat.rfind(')') + 2));
  std::string startTime;
  for (int field = 3; field <= 22; ++field) fields >> startTime;
  Dictionary entry = Dictionary::Create();
  entry.Set("Executable", program);
  entry.Set("StartTime", startTime);
  entry.Set("ProcessID", Number::FromInteger(pid));
  folder_.Write("runtime/applications/1", CreateXMLPropertyList(entry));
  std::filesystem::remove(program);
  EXPECT_EQ(RunningApplications().size(), 1u);
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  EXPECT_TRUE(RunningApplications().empty());
}

TEST_F(ProcessTest, AFolderThatOthersMayEnterIsRefused) {
  ASSERT_FALSE(MakeFolder(folder_ / "runtime", 0755));
  std::string error;
  EXPECT_FALSE(AnnounceApplication("Tester", "com.example.tester", &error));
  EXPECT_THAT(error, testing::HasSubstr("Permission denied"));
}

TEST_F(ProcessTest, ADetachedProgramGetsItsArgumentAndItsFile) {
  const std::string script = folder_.Write("script", "#!/bin/sh\necho \"$#:$1\"\ncat\necho end >&2\n");
  std::filesystem::permissions(script, std::filesystem::perms(0755));
  const std::string output = folder_ / "output";
  ASSERT_EQ(mkfifo(output.c_str(), 0600), 0);
  const Descriptor reader(open(output.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  std::string error;
  ASSERT_TRUE(LaunchDetached(script, "an argument", output, &error)) << error;
  // The pipe ends when the program and all that it started have ended.
  ASSERT_EQ(fcntl(reader.Get(), F_SETFL, 0), 0);
  std::string text;
  char piece[64];
  for (ssize_t got; (got = read(reader.Get(), piece, sizeof piece)) > 0;) text.append(piece, static_cast<size_t>(got));
  EXPECT_EQ(text, "1:an argument\nend\n");
}

TEST_F(ProcessTest, ALaunchThatFailsSaysWhy) {
  const std::string notExecutable = folder_.Write("data", "text");
  const struct {
    std::string executable, output, reason;
  } rows[] = {{folder_ / "missing", "", "No such file"},
              {notExecutable, "", "Permission denied"},
              {"/bin/true", folder_ / "missing/output", "No such file"}};
  for (const auto& row : rows) {
    std::string error;
    EXPECT_FALSE(LaunchDetached(row.executable, "x", row.output, &error)) << row.executable;
    EXPECT_THAT(error, testing::HasSubstr(row.reason));
  }
  EXPECT_FALSE(IsExecutableFile(notExecutable));
  EXPECT_FALSE(IsExecutableFile(folder_.Path()));
  EXPECT_TRUE(IsExecutableFile("/bin/true"));
}

TEST_F(ProcessTest, PowerObserversMayRemoveEachOther) {
  std::vector<PowerEvent> told;
  int second = 0;
  const int first = AddPowerObserver([&](PowerEvent event) {
    told.push_back(event);
    RemovePowerObserver(second);
  });
  second = AddPowerObserver([](PowerEvent) { FAIL() << "removed by the first"; });
  PostPowerEvent(PowerEvent::kWillSleep);
  EXPECT_THAT(told, testing::ElementsAre(PowerEvent::kWillSleep));
  // A sleep is reported once, after its end.
  told.clear();
  for (const double asleep : {100.0, 100.2, 160.0, 160.1, 100.0}) NoticeSleep(asleep);
  EXPECT_THAT(told, testing::ElementsAre(PowerEvent::kWillSleep, PowerEvent::kDidWake));
  RemovePowerObserver(first);
}

TEST_F(ProcessTest, UUIDsAreInUpperCaseAndDiffer) {
  const std::string uuid = CreateUUIDString();
  EXPECT_THAT(uuid, testing::MatchesRegex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
  EXPECT_NE(uuid, CreateUUIDString());
}

class SocketTest : public ProcessTest {
 protected:
  // Longer than a socket's address can be.
  const std::string deep_ = folder_ / (std::string(90, 'a') + "/" + std::string(90, 'b'));
};

TEST_F(SocketTest, MessagesGoBothWaysWhole) {
  std::error_code error;
  const Descriptor listening = ListenLocal(deep_, "socket", error);
  ASSERT_TRUE(listening) << error.message();
  struct stat info;
  ASSERT_EQ(stat(deep_.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);
  std::thread server([&] {
    std::error_code failure;
    const Descriptor taken = AcceptLocal(listening.Get(), failure);
    std::string message;
    while (!ReceiveMessage(taken.Get(), message)) SendMessage(taken.Get(), message + "!");
  });
  {
    const Descriptor connected = ConnectLocal(deep_, "socket", error);
    ASSERT_TRUE(connected) << error.message();
    for (const std::string& sent : {std::string(), std::string("a\0b", 3), std::string(1 << 20, 'x')}) {
      std::string received;
      EXPECT_FALSE(SendMessage(connected.Get(), sent));
      EXPECT_FALSE(ReceiveMessage(connected.Get(), received));
      EXPECT_EQ(received, sent + "!");
    }
  }
  server.join();
}

TEST_F(SocketTest, ADeadServersSocketIsReplacedALivingOnesIsNot) {
  std::error_code error;
  Descriptor first = ListenLocal(deep_, "socket", error);
  ASSERT_TRUE(first);
  EXPECT_FALSE(ListenLocal(deep_, "socket", error));
  EXPECT_EQ(error, std::errc::address_in_use);
  first.Close();
  EXPECT_FALSE(ConnectLocal(deep_, "socket", error));
  EXPECT_EQ(error, std::errc::connection_refused);
  EXPECT_TRUE(ListenLocal(deep_, "socket", error)) << error.message();

  EXPECT_FALSE(ConnectLocal(folder_ / "missing", "socket", error));
  EXPECT_EQ(error, std::errc::no_such_file_or_directory);
  ASSERT_EQ(chmod(deep_.c_str(), 0755), 0);
  EXPECT_FALSE(ListenLocal(deep_, "other", error));
  EXPECT_EQ(error, std::errc::permission_denied);
}

TEST_F(SocketTest, BrokenStreamsAreErrors) {
  const struct {
    std::string bytes;
    std::errc error;
  } rows[] = {{"", std::errc::connection_reset},
              {std::string("\0\0", 2), std::errc::connection_reset},
              {std::string("\0\0\0\5abc", 7), std::errc::connection_reset},
              {"\xFF\xFF\xFF\xFF", std::errc::message_size}};
  for (const auto& row : rows) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    ASSERT_EQ(send(writer.Get(), row.bytes.data(), row.bytes.size(), 0), static_cast<ssize_t>(row.bytes.size()));
    writer.Close();
    std::string message;
    EXPECT_EQ(ReceiveMessage(reader.Get(), message), row.error);
    EXPECT_TRUE(SendMessage(reader.Get(), "nobody is there")) << "an error, and no signal";
  }
}

}  // namespace
}  // namespace platform
