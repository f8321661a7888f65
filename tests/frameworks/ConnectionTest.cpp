// The agent library with an agent that does not answer: a fake at the other end of the socket, which can be silent like
// an agent whose process is stopped.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "agent/client/AgentConnection.h"
#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Facade.h"
#include "frameworks/VelorantPluginInterface/RecentFonts.h"
#include "frameworks/VelorantPluginInterface/ResultCodes.h"
#include "platform/Clock.h"
#include "platform/Folders.h"
#include "support/TempFolder.h"

namespace {

using namespace plugin_interface;
using namespace std::chrono_literals;
using agent_protocol::Json;
using platform::Descriptor;

constexpr uint32_t kGone = PluginInterface::kAgentShutdownCode;

// Serves one descriptor, or all that connect to a listening one, on its own thread.
class StandIn {
 public:
  // Returns whether to answer a request, with code 0.
  using Answers = std::function<bool(const std::string& call)>;

  // Hangs up at the first `hangUps` requests, like an agent that is being killed.
  StandIn(Descriptor socket, bool isListening, Answers answers, int hangUps = 0,
          uint32_t protocol = agent_protocol::kProtocolVersion)
      : socket_(std::move(socket)),
        isListening_(isListening),
        answers_(std::move(answers)),
        hangUps_(hangUps),
        protocol_(protocol) {
    EXPECT_EQ(pipe(stop_), 0);
    thread_ = std::thread([this] { Serve(); });
  }
  ~StandIn() {
    SetStopped(false);
    close(stop_[1]);
    thread_.join();
    close(stop_[0]);
  }
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;

  // While it is stopped, it neither accepts nor reads. Messages wait.
  void SetStopped(bool isStopped) {
    const std::lock_guard lock(mutex_);
    isStopped_ = isStopped;
    changed_.notify_all();
  }
  std::vector<std::string> Heard() const {
    const std::lock_guard lock(mutex_);
    return heard_;
  }

 private:
  void Serve() {
    std::vector<Descriptor> accepted;
    for (;;) {
      std::vector<pollfd> polled{{stop_[0], POLLIN, 0}, {socket_.Get(), POLLIN, 0}};
      for (const Descriptor& each : accepted) polled.push_back({each.Get(), POLLIN, 0});
      poll(polled.data(), polled.size(), -1);
      if (polled[0].revents != 0) return;
      {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !isStopped_; });
      }
      for (size_t i = polled.size(); i-- > 2;) {
        if (polled[i].revents != 0 && !ServeOne(polled[i].fd)) accepted.erase(accepted.begin() + (i - 2));
      }
      if (polled[1].revents == 0) continue;
      std::error_code error;
      if (isListening_) {
        accepted.push_back(platform::AcceptLocal(socket_.Get(), error));
      } else if (!ServeOne(socket_.Get())) {
        return;
      }
    }
  }
  bool ServeOne(int socket) {
    std::string text;
    if (platform::ReceiveMessage(socket, text)) return false;
    const Json request = Json::parse(text);
    if (hangUps_-- > 0) return false;
    {
      const std::lock_guard lock(mutex_);
      heard_.push_back(request["call"]);
    }
    if (answers_(request["call"])) Reply(socket, request["id"]);
    return true;
  }
  void Reply(int socket, uint64_t id) const {
    const Json record = {{"PostScriptName", "A"}};
    const Json found = {{"fontIDs", {1, 2, 3}}, {"records", {record, record}}, {"flags", {1, 0}}};
    const Json result = {{"protocol", protocol_}, {"value", 1}, {"record", record}, {"found", Json::array({found})}};
    platform::SendMessage(socket, Json{{"id", id}, {"code", 0}, {"result", result}}.dump());
  }

  Descriptor socket_;
  const bool isListening_;
  const Answers answers_;
  int hangUps_;  // left
  const uint32_t protocol_;
  int stop_[2] = {};
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool isStopped_ = false;
  std::vector<std::string> heard_;
  std::thread thread_;
};

struct Pair {
  Pair() {
    int ends[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    ours = Descriptor(ends[0]);
    theirs = Descriptor(ends[1]);
  }
  Descriptor ours, theirs;
};

void Ignore() {}

TEST(AgentConnection, ACallToAnAgentThatSaysNothingEnds) {
  Pair pair;
  const StandIn agent(std::move(pair.theirs), false, [](const std::string&) { return false; });
  AgentConnection connection(
      std::move(pair.ours), [](const Json&) {}, Ignore, 100ms);
  EXPECT_EQ(connection.Call<calls::ActivateFonts>({}).code, kGone);
  EXPECT_TRUE(connection.IsLost() && connection.HasFallenSilent());
  EXPECT_EQ(agent.Heard(), (std::vector<std::string>{"ActivateFonts", "GetIsOnline"}))
      << "it is asked before it is lost";
  EXPECT_EQ(connection.Call<calls::ActivateFonts>({}).code, kGone) << "at once";
}

TEST(AgentConnection, AnAgentThatReadsNothingIsLostToo) {
  Pair pair;
  AgentConnection connection(
      std::move(pair.ours), [](const Json&) {}, Ignore, 100ms);
  EXPECT_EQ(connection.Call<calls::CreateTopLevelSet>({std::string(1000 << 10, 'x'), 0, {}}).code, kGone);
  EXPECT_TRUE(connection.HasFallenSilent());
}

// The agent would end the connection and deactivate everything for this client.
TEST(AgentConnection, ARequestThatIsTooLongIsNotSent) {
  Pair pair;
  const StandIn agent(std::move(pair.theirs), false, [](const std::string&) { return true; });
  AgentConnection connection(
      std::move(pair.ours), [](const Json&) {}, Ignore);
  const std::string text(agent_protocol::kLongestRequest, 'x');
  EXPECT_EQ(connection.Call<calls::CreateTopLevelSet>({text, 0, {}}).code, agent_protocol::kMessageTooLarge);
  EXPECT_EQ(connection.Call<calls::CreateTopLevelSet>({text.substr(200), 0, {}}).code, kInvalidMessage);
  EXPECT_EQ(agent.Heard(), std::vector<std::string>{"CreateTopLevelSet"});
}

TEST(AgentConnection, AnAgentThatIsBusyIsWaitedFor) {
  Pair pair;
  // The reply comes only after the probe, so after more than half of the patience.
  std::atomic<int> socket = pair.theirs.Get();
  const StandIn agent(std::move(pair.theirs), false, [&](const std::string& call) {
    if (call != "GetIsOnline") return false;
    const Json late = {{"id", 1}, {"code", 7}};
    platform::SendMessage(socket, late.dump());
    return true;
  });
  AgentConnection connection(
      std::move(pair.ours), [](const Json&) {}, Ignore, 4s);
  EXPECT_EQ(connection.Call<calls::GetScanReport>({}).code, 7u);
  EXPECT_FALSE(connection.IsLost());
}

TEST(AgentConnection, ACallFromAReceiverOfNotificationsEndsAsWell) {
  Pair pair;
  std::atomic<uint32_t> code = 99;
  AgentConnection* caller = nullptr;
  const int agent = pair.theirs.Get();
  AgentConnection connection(
      std::move(pair.ours),
      [&](const Json&) {
        code = caller->Call<calls::GetFontIsActivated>({}).code;
        code.notify_all();
      },
      Ignore, 100ms);
  caller = &connection;
  platform::SendMessage(agent, Json{{"notify", 8}, {"fontID", 1}}.dump());
  code.wait(99);
  EXPECT_EQ(code, kGone);
  EXPECT_TRUE(connection.HasFallenSilent());
}

class SilentAgent : public testing::Test {
 protected:
  SilentAgent() {
    platform::Places places;
    places.runtime = folder_ / "run";
    platform::SetPlaces(places);
    SetPatienceForTesting(100ms);
  }
  ~SilentAgent() override {
    AwaitVoice();
    DiscardFacade(false);
    SetPatienceForTesting(AgentConnection::kPatience);
  }
  Descriptor Listen() const {
    std::error_code error;
    Descriptor listening = platform::ListenLocal(folder_ / "run", agent_protocol::kAgentSocketName, error);
    EXPECT_FALSE(error) << error.message();
    return listening;
  }
  static uint32_t Ask() { return CurrentFacade()->Call<calls::GetIsOnline>({}).code; }
  static void AwaitVoice() {
    while (IsAgentSilent()) std::this_thread::yield();
  }
  static bool AnswerAll(const std::string&) { return true; }

  test_support::TempFolder folder_;
};

TEST_F(SilentAgent, CostsTheWaitingOnceAndIsFoundAgain) {
  StandIn agent(Listen(), true, AnswerAll);
  EXPECT_EQ(Ask(), kSuccess);
  agent.SetStopped(true);
  EXPECT_EQ(Ask(), kGone) << "the connection is lost";
  EXPECT_EQ(Ask(), kReplyTimeout) << "no reason to relaunch";
  DiscardFacade(false);  // a relaunch does this
  EXPECT_EQ(Ask(), kReplyTimeout);
  EXPECT_TRUE(IsAgentSilent());
  agent.SetStopped(false);
  AwaitVoice();
  EXPECT_EQ(Ask(), kSuccess);
}

TEST_F(SilentAgent, AtTheGreetingIsNoReasonToRelaunchEither) {
  Descriptor listening = Listen();  // does not accept
  EXPECT_EQ(Ask(), kReplyTimeout);
  EXPECT_EQ(Ask(), kReplyTimeout);
  const StandIn agent(std::move(listening), true, AnswerAll);
  AwaitVoice();
  EXPECT_EQ(Ask(), kSuccess);
}

TEST_F(SilentAgent, OfAnotherProtocolIsAskedNothingMore) {
  const StandIn agent(Listen(), true, AnswerAll, 0, agent_protocol::kProtocolVersion + 1);
  EXPECT_EQ(Ask(), uint32_t{agent_protocol::kVersionMismatch});
  EXPECT_EQ(agent.Heard(), std::vector<std::string>{"Hello"});
}

TEST_F(SilentAgent, ThatEndsIsAnAgentThatIsGone) {
  {
    const Descriptor listening = Listen();
    EXPECT_EQ(Ask(), kReplyTimeout);
  }
  AwaitVoice();
  // A caller that keeps relaunching learns when it is useless.
  uint32_t code = PluginInterface::kServiceUnavailableCode;
  for (int relaunches = 0; IsAgentGone(code) && relaunches < 100; ++relaunches) {
    DiscardFacade(false);
    code = Ask();
  }
  EXPECT_EQ(code, kAgentNotFound);
  EXPECT_EQ(Ask(), PluginInterface::kServiceUnavailableCode) << "and can try again later";
}

// Its socket accepts connections until the system has cleaned up. A caller that was told that the agent is gone would
// tell the user, and start several new ones.
TEST_F(SilentAgent, ThatIsBeingKilledIsGoneOnlyWhenItsSocketIs) {
  SetPatienceForTesting(AgentConnection::kPatience);
  const StandIn agent(Listen(), true, AnswerAll, 3);
  EXPECT_EQ(Ask(), kSuccess);
}

// As the plug-in asks for each font of a document: a name, and for each font with it the name again and the record.
TEST_F(SilentAgent, IsAskedOnceForANameAndTheRecordsOfItsFonts) {
  constexpr size_t kNames = 200;
  SetPatienceForTesting(AgentConnection::kPatience);
  platform::Clock::SetDriven(1000);
  const StandIn agent(Listen(), true, AnswerAll);
  const auto h = CurrentFacade()->Handle();
  EXPECT_EQ(CurrentFacade()->Connect(), 0u);
  const size_t before = agent.Heard().size();
  const auto questions = [&] { return agent.Heard().size() - before; };
  const auto lookUp = [&](const std::string& name) {
    uint32_t ids[8] = {}, count = 0;
    EXPECT_EQ(GetFontsByPostscriptName(h, name.c_str(), nullptr, 0, ids, 8, &count), 0u);
    EXPECT_TRUE(count == 3 && ids[2] == 3);
  };
  const auto readRecord = [&](const char* id) {
    platform::Dictionary request = platform::Dictionary::Create();
    request.Set("DatabaseID", id);
    PluginInterface::FontRecordFields fields;
    PluginInterface::ValueRef out = nullptr;
    EXPECT_EQ(GetFontInfoByID(h, nullptr, 0, request.Ref(), &fields, &out), 0u);
    EXPECT_EQ(platform::Dictionary(platform::Value::Adopt(out)).GetString("PostScriptName").View(), "A");
  };
  for (size_t name = 0; name < kNames; ++name) {
    lookUp(std::to_string(name));
    for (const char* id : {"1", "2"}) {
      lookUp(std::to_string(name));
      readRecord(id);
    }
    const uint32_t compared[] = {1, 2};
    uint32_t areActive[2] = {};
    EXPECT_EQ(GetFontIsActivated(h, 2, compared, areActive), 0u);
    EXPECT_TRUE(areActive[0] == 1 && areActive[1] == 0);
  }
  EXPECT_EQ(questions(), kNames);
  readRecord("3");  // was not sent along
  const std::string last = std::to_string(kNames - 1);
  platform::Clock::SetDriven(1000 + 2 * RecentFonts::kKeptSeconds);
  lookUp(last);
  readRecord("1");
  EXPECT_EQ(questions(), kNames + 2);
  DeactivateFonts(h, 0, nullptr, 0);
  lookUp(last);
  EXPECT_EQ(questions(), kNames + 4) << "something may have changed";
  platform::Clock::UseSystemTime();
}

}  // namespace
