// The agent's end of the socket with clients that send pieces, too much, or nonsense.
#include "agent/server/Server.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/LocalSocket.h"
#include "support/TempFolder.h"

namespace {

using namespace agent;
using namespace std::string_literals;
using testing::ElementsAre;

constexpr double kMostSeconds = 60;
constexpr const char* kSocketName = "test.sock";

std::string Framed(const std::string& message) {
  const uint32_t length = htonl(static_cast<uint32_t>(message.size()));
  return std::string(reinterpret_cast<const char*>(&length), sizeof length) + message;
}

struct FrameRow {
  const char* what;
  std::string bytes;
  std::vector<std::string> messages;
  bool tooLong;
};

const FrameRow kFrames[] = {
    {"nothing", "", {}, false},
    {"part of a length", "\0\0\0"s, {}, false},
    {"a length alone", "\0\0\0\5"s, {}, false},
    {"one byte short", Framed("hello").substr(0, 8), {}, false},
    {"one", Framed("hello"), {"hello"}, false},
    {"empty", Framed(""), {""}, false},
    {"two and a half", Framed("a") + Framed("bb") + Framed("ccc").substr(0, 5), {"a", "bb"}, false},
    {"longest, as yet only announced", "\0\x10\0\0"s, {}, false},
    {"one above the longest", "\0\x10\0\1"s, {}, true},
    {"a request of another protocol", "GET / HTTP/1.1\r\n\r\n", {}, true},
    {"nonsense after a message", Framed("a") + "\xFF\xFF\xFF\xFF", {"a"}, true},
};

// The messages do not depend on the pieces in which the bytes arrive.
TEST(FrameReader, CutsMessagesFromPiecesOfAnySize) {
  for (const FrameRow& row : kFrames) {
    for (const size_t piece : {size_t{1}, size_t{3}, size_t{1000}}) {
      SCOPED_TRACE(row.what + (" in pieces of "s + std::to_string(piece)));
      platform::FrameReader reader(agent_protocol::kLongestRequest);
      std::vector<std::string> messages;
      bool tooLong = false;
      for (size_t at = 0; at < row.bytes.size() && !tooLong; at += piece) {
        reader.Add(std::string_view(row.bytes).substr(at, piece));
        std::string message;
        platform::FrameReader::Result result;
        while ((result = reader.Next(message)) == platform::FrameReader::Result::kMessage) messages.push_back(message);
        tooLong = result == platform::FrameReader::Result::kTooLong;
      }
      EXPECT_EQ(messages, row.messages);
      EXPECT_EQ(tooLong, row.tooLong);
    }
  }
}

class ServerTest : public testing::Test {
 protected:
  ServerTest()
      : server_(loop_, {[this](ClientID client, std::string_view message) {
                          messages_.emplace_back(message);
                          if (message == "drop me") server_.Drop(client);
                          if (message == "echo") server_.Send(client, "echoed");
                          last_ = client;
                        },
                        [this](ClientID client) { gone_.push_back(client); }}) {
    EXPECT_FALSE(server_.Listen(folder_ / "run", kSocketName));
  }

  platform::Descriptor Connect() const {
    std::error_code error;
    platform::Descriptor socket = platform::ConnectLocal(folder_ / "run", kSocketName, error);
    EXPECT_FALSE(error);
    return socket;
  }
  static void SendRaw(const platform::Descriptor& socket, const std::string& bytes) {
    EXPECT_EQ(send(socket.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
  }
  void AwaitMessages(size_t count) {
    EXPECT_TRUE(loop_.RunUntil([&] { return messages_.size() >= count; }, kMostSeconds));
  }
  void AwaitGone(size_t count) {
    EXPECT_TRUE(loop_.RunUntil([&] { return gone_.size() >= count; }, kMostSeconds));
  }

  test_support::TempFolder folder_;
  platform::RunLoop loop_;
  std::vector<std::string> messages_;
  std::vector<ClientID> gone_;
  ClientID last_ = 0;
  Server server_;
};

TEST_F(ServerTest, ServesSeveralClientsAndTellsWhenEachGoes) {
  platform::Descriptor first = Connect();
  platform::Descriptor second = Connect();
  SendRaw(first, Framed("echo") + Framed("b").substr(0, 2));
  SendRaw(second, Framed("from the second"));
  AwaitMessages(2);
  EXPECT_THAT(messages_, testing::UnorderedElementsAre("echo", "from the second"));
  std::string answer;
  EXPECT_FALSE(platform::ReceiveMessage(first.Get(), answer));
  EXPECT_EQ(answer, "echoed");
  first.Close();  // in the middle of a message
  AwaitGone(1);
  SendRaw(second, Framed("still here"));
  AwaitMessages(3);
  EXPECT_EQ(messages_.back(), "still here");
  EXPECT_THAT(gone_, testing::SizeIs(1));
}

TEST_F(ServerTest, NothingMoreIsTakenFromADroppedClient) {
  const platform::Descriptor socket = Connect();
  SendRaw(socket, Framed("drop me") + Framed("not this") + Framed("nor this"));
  AwaitGone(1);
  EXPECT_THAT(messages_, ElementsAre("drop me"));
  server_.Send(gone_.front(), "to nobody");
}

TEST_F(ServerTest, AClientThatNeverReadsIsDroppedInTheEnd) {
  const platform::Descriptor deaf = Connect();
  SendRaw(deaf, Framed("hello"));
  AwaitMessages(1);
  const std::string big(8 << 20, 'x');
  for (int i = 0; i < 10; ++i) server_.Send(last_, big);
  AwaitGone(1);
  EXPECT_THAT(gone_, ElementsAre(last_));
}

TEST_F(ServerTest, WithoutFilesToOpenANewClientIsTurnedAwayAndTheOthersAreServed) {
  const platform::Descriptor served = Connect();
  SendRaw(served, Framed("hello"));
  AwaitMessages(1);
  const platform::Descriptor turnedAway = Connect();
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit low{std::min<rlim_t>(before.rlim_cur, 256), before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &low);
  std::vector<platform::Descriptor> all;
  for (int fd = 0; (fd = dup(served.Get())) >= 0;) all.emplace_back(fd);
  pollfd ended{turnedAway.Get(), POLLIN, 0};
  EXPECT_TRUE(loop_.RunUntil([&] { return poll(&ended, 1, 0) > 0; }, kMostSeconds));
  char byte = 0;
  EXPECT_EQ(recv(turnedAway.Get(), &byte, 1, 0), 0);
  SendRaw(served, Framed("still here"));
  AwaitMessages(2);
  all.clear();
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_TRUE(gone_.empty());
}

// A user deletes the state folder and starts again while the old agent is still about to end.
TEST_F(ServerTest, AnOldServerLeavesTheSocketOfItsSuccessor) {
  std::filesystem::remove_all(folder_ / "run");
  Server successor(loop_, {[](ClientID, std::string_view) {}, [](ClientID) {}});
  EXPECT_FALSE(successor.Listen(folder_ / "run", kSocketName));
  server_.StopListening();
  EXPECT_TRUE(Connect());
}

}  // namespace
