// panelcat as a user runs it, on the port of a real panel.
#include <atomic>
#include <thread>

#include "panel/PanelFixture.h"
#include "support/ProgramRun.h"

namespace {

using test_support::Outcome;

class PanelcatFixture : public PanelFixture {
 protected:
  // Runs the program with this input while the plug-in's timer ticks.
  Outcome Run(const std::string& arguments, const std::string& input) {
    const std::string line =
        std::string(APP_DIR "/panelcat/panelcat ") + arguments + " <'" + folder.Write("in", input) + "'";
    Outcome outcome;
    std::atomic<bool> isDone = false;
    std::thread program([&] {
      outcome = test_support::RunLine(line, folder);
      isDone = true;
    });
    while (!isDone) {
      panels.SelectSocket(true);
      panels.PopNotifications();
      std::this_thread::yield();
    }
    program.join();
    return outcome;
  }
  std::string Port() {
    panels.ResetForTesting();
    panels.OpenSocket();
    return std::to_string(panels.GetSocketPort());
  }

  PanelManager panels;
};
using Panelcat = PanelcatFixture;

TEST_F(Panelcat, SendsLinesAndPrintsMessages) {
  const std::string greeting = "({\"messageID\":20,\"isStandalone\":1})\n", reply = std::string(kProbesReply) + "\n";
  Outcome outcome = Run("-n 4 " + Port(), std::string(kProbe) + "\n\n" + kProbe);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.output.substr(0, greeting.size()), greeting);
  EXPECT_NE(outcome.output.find(reply + reply), std::string::npos) << outcome.output;
  outcome = Run("--wait 0.05 --count 50 " + Port(), kProbe);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.errors.find("of 50 messages came"), std::string::npos) << outcome.errors;
  EXPECT_EQ(Run("--wait 0.05 " + Port(), "").status, 0);
}

TEST_F(Panelcat, SaysWhatIsWrong) {
  const struct {
    const char* arguments;
    int status;
    const char* said;
  } kRows[] = {
      {"", 2, "names one port"},
      {"12 13", 2, "names one port"},
      {"x", 2, "'x' is no port"},
      {"0", 2, "'0' is no port"},
      {"2147483647", 2, "'2147483647' is no port"},
      {"--wait x 12", 2, "--wait takes"},
      {"--count 0 12", 2, "--count takes"},
      {"1", 1, "port 1: Connection refused"},
  };
  for (const auto& row : kRows) {
    const Outcome outcome = Run(row.arguments, "");
    EXPECT_EQ(outcome.status, row.status) << row.arguments;
    EXPECT_NE(outcome.errors.find(row.said), std::string::npos) << outcome.errors;
  }
}

}  // namespace
