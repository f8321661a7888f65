// An agent whose socket a service manager holds, as with systemd's socket units.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "agent/AgentRing.h"
#include "platform/Files.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;

class PassedSocket : public AgentRing {
 protected:
  PassedSocket() {
    FillLibrary();
    EXPECT_FALSE(platform::MakeFolder(state_ / "run", 0700));
    Listen(state_ / "run/nexcore.sock");
  }

  void Listen(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    listening_ = platform::Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(bind(listening_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listening_.Get(), 16), 0);
  }

  // Starts an agent with this many passed sockets, null for none. Returns its process.
  pid_t Start(const char* count) const {
    const pid_t child = fork();
    if (child != 0) return child;
    alarm(kMostMilliseconds / 1000);  // ends an agent that a failed test leaves
    dup2(listening_.Get(), 3);
    fcntl(3, F_SETFD, 0);  // dup2 leaves the flag if it is the same descriptor
    if (count) setenv("LISTEN_FDS", count, 1);
    setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
    execl(APP_DIR "/agent/Nexcore", "Nexcore", state_.Path().c_str(), nullptr);
    _exit(99);
  }
  static int StatusOf(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  platform::Descriptor listening_;
};

// A client may connect before its agent runs, and the next one after it has ended.
TEST_F(PassedSocket, IsServedByOneAgentAfterTheOtherAndNeverRemoved) {
  for (int round = 0; round < 2; ++round) {
    RawClient client(state_ / "run");
    const pid_t agent = Start("1");
    EXPECT_EQ(client.Hello()["code"], 0);
    EXPECT_EQ(client.AgentProcess(), getpid()) << "the socket is not the one that was passed";
    // A program that finds no agent in the list of processes starts one. It leaves the socket to the first.
    const pid_t second = Start(nullptr);
    EXPECT_EQ(StatusOf(second), 0);
    EXPECT_EQ(client.Ask("GetStatus")["code"], 0);
    kill(agent, SIGTERM);
    EXPECT_EQ(StatusOf(agent), 0);
    EXPECT_TRUE(fs::exists(state_ / "run/nexcore.sock"));
  }
}

// The service manager must see the connection, so the agent that it starts finds the lock free.
TEST_F(PassedSocket, AnAgentThatWasStartedBesideTheServiceManagerEndsAndCallsIt) {
  EXPECT_EQ(StatusOf(Start(nullptr)), 0);
  const pid_t agent = Start("1");
  RawClient client(state_ / "run");
  EXPECT_EQ(client.Hello()["code"], 0);
  kill(agent, SIGTERM);
  EXPECT_EQ(StatusOf(agent), 0);
}

TEST_F(PassedSocket, OfAnotherPlaceIsRefused) {
  EXPECT_EQ(StatusOf(Start("2")), 1);
  Listen(state_ / "run/other.sock");
  EXPECT_EQ(StatusOf(Start("1")), 1);
}

}  // namespace
