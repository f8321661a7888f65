// Loading plug-ins, their messages, and the modal loop.
#include <filesystem>
#include <stdexcept>

#include "host/HostTest.h"
#include "host/LiveObjects.h"
#include "host/ModalSession.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"
#include "platform/RunLoop.h"

using namespace host_sdk;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
using PluginTest = HostTest;
constexpr const char* kInfo =
    "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>x</string></dict></plist>";
}  // namespace

TEST_F(PluginTest, BundleThatCannotStartGivesOneLineAndLeavesNothing) {
  application.Quit();
  std::filesystem::create_directory(InFolder("BadObject.plugin"));
  Write("BadObject.plugin/Info.plist", kInfo);
  Write("BadObject.plugin/BadObject", "no shared object");
  int failure = 0;
  onMessage = [&](const std::string& selector, SPMessageData*) -> SPErr {
    if (selector != "Startup" || failure == 0) return kNoErr;
    if (failure == 1) return kBadParameters;
    if (failure == 2) throw 4711L;
    throw std::runtime_error("no luck");
  };
  struct Row {
    std::string bundle;
    int failure;
    std::string expected;
  };
  const Row rows[] = {
      {InFolder("missing.plugin"), 0, "missing.plugin/Info.plist: No such file"},
      {InFolder("BadObject.plugin"), 0, "BadObject.plugin/BadObject"},
      {std::string(PLUGINS_DIR) + "/NoEntry.plugin", 0, "NoEntry.plugin has no function \"AutoPluginMain\""},
      {RecorderBundle(), 1, "Recorder.plugin: \"Startup\" failed: error 'Parm'"},
      {RecorderBundle(), 2, "Recorder.plugin: \"Startup\" failed: error 4711 was thrown"},
      {RecorderBundle(), 3, "Recorder.plugin: \"Startup\" failed: an exception was thrown: no luck"},
  };
  for (const Row& row : rows) {
    failure = row.failure;
    host::HostApplication other;
    const std::string problem = other.Start(row.bundle);
    EXPECT_THAT(problem, HasSubstr(row.expected));
    EXPECT_THAT(problem, testing::Not(HasSubstr("\n")));
    EXPECT_EQ(host::LiveObjects().Total(), 0u) << row.bundle;
  }
  failure = 0;
  host::HostApplication other;
  EXPECT_EQ(other.Start(RecorderBundle()), "") << "a failed start is in nobody's way";
  EXPECT_THAT(application.Start(RecorderBundle()), HasSubstr("running in this process"));
}

TEST_F(PluginTest, CommandsCarryTheirDescriptorBothWays) {
  onMessage = [&](const std::string& selector, SPMessageData* message) -> SPErr {
    if (selector != "Do It") return kNoErr;
    const auto& descriptors = host::ActionDescriptorSuite();
    const PIActionDescriptor descriptor = message->actionParameters->descriptor;
    int32_t operation = 0;
    EXPECT_EQ(descriptors.GetInteger(descriptor, Code("Oper"), &operation), kNoErr);
    descriptors.Clear(descriptor);
    if (operation == 4) descriptors.PutInteger(descriptor, Code("SPor"), 50001);
    return operation == 5 ? static_cast<SPErr>(Code("fbar")) : kNoErr;
  };
  int32_t port = 0;
  EXPECT_EQ(application.DoIt(4, &port), "");
  EXPECT_EQ(port, 50001);
  EXPECT_EQ(application.DoIt(3, &port), "");
  EXPECT_EQ(port, -1);
  EXPECT_THAT(application.DoIt(5, nullptr), HasSubstr("error 'fbar'"));
  EXPECT_EQ(application.About(), "");
  EXPECT_THAT(TakeEvents(), ElementsAre("Do It", "Do It", "Do It", "About"));
}

TEST_F(PluginTest, GlobalsAreKeptBetweenMessages) {
  void* block = nullptr;
  std::vector<void*> seen;
  onMessage = [&](const std::string& selector, SPMessageData* message) {
    seen.push_back(message->globals);
    if (selector == "About") {
      EXPECT_EQ(host::BlocksSuite().AllocateBlock(16, "globals", &block), kNoErr);
      message->globals = block;
    }
    return selector == "Do It" ? host::BlocksSuite().FreeBlock(message->globals) : kNoErr;
  };
  application.About();
  EXPECT_EQ(host::LiveObjects().blocks, 1u);
  EXPECT_EQ(application.DoIt(1, nullptr), "");
  EXPECT_THAT(seen, ElementsAre(nullptr, block));
}

TEST_F(PluginTest, ModalSessionHoldsBackTimersOfTheDefaultMode) {
  std::vector<std::string> fired;
  for (const auto mode : {platform::RunLoopMode::kDefault, platform::RunLoopMode::kCommon}) {
    const std::string name = mode == platform::RunLoopMode::kDefault ? "default" : "common";
    platform::RunLoop::Main().AddTimer(
        platform::RunLoopTimer::After(0, 0, [&fired, name](platform::RunLoopTimer&) { fired.push_back(name); }), mode);
  }
  {
    host::ModalSession outer("A box");
    const platform::Window* outerWindow = platform::Window::Modal();
    ASSERT_NE(outerWindow, nullptr);
    {
      host::ModalSession inner("Another");
      EXPECT_TRUE(inner.RunUntil([&] { return !fired.empty(); }, 10));
    }
    EXPECT_EQ(platform::Window::Modal(), outerWindow);
    EXPECT_THAT(fired, ElementsAre("common"));
  }
  EXPECT_EQ(platform::Window::Modal(), nullptr);
  application.Wait(0.1);
  EXPECT_THAT(fired, ElementsAre("common", "default"));
  EXPECT_THAT(TakeEvents(), ElementsAre("order \"A box\" current=none", "order \"Another\" current=none"));
}
