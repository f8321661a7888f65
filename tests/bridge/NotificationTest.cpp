// The agent's notifications: packed on any thread, handled on one thread in their order.
#include <thread>

#include "Bridge/NotificationKeys.h"
#include "support/PluginFixture.h"
#include "support/Records.h"

using namespace fakes;
using platform::Dictionary;

namespace {

class Notices : public PluginFixture {
 protected:
  template <class T>
  static TModuleErrorCode Post(uint32_t kind, T value) {
    return CoreAgentNotificationCallback(static_cast<PluginInterface::ECallbackKind>(kind), &value);
  }
};

}  // namespace

TEST_F(Notices, AreAnsweredInTheOrderOfTheirArrival) {
  EXPECT_EQ(Post<uint32_t>(8, 1), CoreErrorCodes::kUnknownError) << "dropped: there is no manager";
  CoreAgentInterface& manager = Connect();
  for (const auto& [kind, id] : {std::pair(8u, 1u), {9u, 2u}, {8u, 2u}, {9u, 1u}}) Post(kind, id);
  EXPECT_TRUE(host.heard.empty()) << "nothing is done on the agent's thread";
  EXPECT_EQ(manager.ProcessNotifications(), 4);
  EXPECT_EQ(host.heard,
            (std::vector<std::string>{"FontActivated 1", "FontDeactivated 2", "FontActivated 2", "FontDeactivated 1"}));
  EXPECT_EQ(manager.ProcessNotifications(), 0);
}

TEST_F(Notices, KeepTheFontDataCacheUpToDate) {
  CoreAgentInterface& manager = Connect();
  agent.Add({.id = 1, .postScriptName = "A", .ownState = 4});
  FontOrSetInfoRec fetched;
  ASSERT_EQ(manager.GetFontInfoByID(Record({{"DatabaseID", "1"}}), &fetched), 0);
  const auto isKnownAsActive = [] {
    Dictionary record;
    uint32_t id = 0;
    return FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont("A", record, id);
  };
  for (const bool isActive : {false, true}) {
    Post<uint32_t>(isActive ? PluginInterface::kFontActivated : PluginInterface::kFontDeactivated, 1);
    manager.ProcessNotifications();
    EXPECT_EQ(isKnownAsActive(), isActive);
  }
}

TEST_F(Notices, ComeFromManyThreadsAndNoneIsLost) {
  constexpr uint32_t kThreads = 4, kEach = 500;
  CoreAgentInterface& manager = Connect();
  std::vector<std::thread> threads;
  for (uint32_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([thread] {
      for (uint32_t i = 0; i < kEach; ++i) Post<uint32_t>(8, thread * kEach + i);
    });
  }
  int handled = 0;
  while (handled < static_cast<int>(kThreads * kEach)) handled += manager.ProcessNotifications();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(manager.ProcessNotifications(), 0);
  ASSERT_EQ(host.heard.size(), kThreads * kEach);
  uint32_t next[kThreads] = {};
  for (const std::string& line : host.heard) {
    const uint32_t id = static_cast<uint32_t>(std::stoul(line.substr(line.find(' '))));
    EXPECT_EQ(id % kEach, next[id / kEach]++) << "each thread's own order";
  }
}
