// A font panel on the socket of a real host, with the real agent.
#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

#include "road/RoadFixture.h"
#include "support/PanelClient.h"

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace road {

namespace {

class PanelOnTheRoad : public RoadTest {
 protected:
  PanelOnTheRoad() {
    std::vector<std::string> arguments = Arguments({"--interactive"});
    arguments.erase(arguments.begin());  // the port is told in the report for people
    host = std::make_unique<HostProcess>(arguments);
    host->Send("do-it 4");
    panel = std::make_unique<test_support::PanelClient>(
        static_cast<unsigned>(std::stoul(host->AwaitLine("the font panel's port is "))));
  }
  // Sends a message, reads until a message that contains the text, and returns that.
  std::string Ask(const std::string& request, const std::string& awaited) const {
    panel->SendMessage(request);
    return Await(awaited);
  }
  std::string Await(const std::string& awaited) const {
    std::string message;
    do message = panel->Receive();
    while (!message.empty() && message.find(awaited) == std::string::npos);
    return message;
  }
  static std::string Request(int id, const std::string& fields) {
    return R"({"messageID":)" + std::to_string(id) + "," + fields + "}";
  }

  std::unique_ptr<HostProcess> host;
  std::unique_ptr<test_support::PanelClient> panel;
};

}  // namespace

TEST_F(PanelOnTheRoad, ActivatesAFamilyOfTheLibrary) {
  EXPECT_EQ(Await("\"messageID\":20"), R"(({"messageID":20,"isStandalone":1}))");
  const std::string list = Ask(Request(40, R"("smartListID":1)"), "filename");
  const std::string url = list.substr(29, list.size() - 32), path = url.substr(7);
  const std::string fonts = test_support::TempFolder::Content(path);
  const std::string line = "\tNimbus Sans Bold\tNimbusSans-Bold\t0\tdesktop\t1\n";
  ASSERT_THAT(fonts, HasSubstr(line));
  const size_t end = fonts.find(line), begin = fonts.rfind('\n', end) + 1;
  const std::string id = fonts.substr(begin, end - begin);
  EXPECT_EQ(Ask(Request(13, "\"filename\":\"" + url + "\"") + '\0' + R"({"messageID":16})", "\"messageID\":16"),
            R"(({"messageID":16,"isWindows":false}))");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_THAT(Ask(Request(32, R"("highPriorityFontIDs":[],"fontIDs":[)" + id + R"(],"smartListID":1)"), "image"),
              HasSubstr("\"fontID\":" + id + ",\"image\":\"iVBORw0KGgo"));
  EXPECT_THAT(state_.NamesByFontList(), Not(Contains("NimbusSans-Bold")));
  const std::string fields =
      "\"fontID\":" + id + R"(,"postscriptName":"NimbusSans-Bold","displayName":"Nimbus Sans Bold")";
  EXPECT_EQ(Ask(Request(8, fields), "\"messageID\":8"), R"(({"messageID":8,"returnCode":0}))");
  EXPECT_THAT(Await("\"messageID\":24"), HasSubstr(id));
  EXPECT_THAT(state_.NamesByFontList(), testing::IsSupersetOf({"NimbusSans-Bold", "NimbusSans-Regular"}));
  state_.EndAgent(SIGTERM);
  EXPECT_EQ(Await("\"messageID\":30"), R"(({"messageID":30,"isEnabled":false}))");
}

TEST_F(PanelOnTheRoad, KeepsSmartListsAndSurvivesTheMessageThatThrows) {
  EXPECT_EQ(Ask(R"({"messageID":38})", "\"messageID\":38"),
            R"(({"smartLists":[{"smartListID":1,"smartListName":"All"},{"smartListID":2,"smartListName":"Active"},)"
            R"({"smartListID":3,"smartListName":"In open documents"},)"
            R"({"smartListID":4,"smartListName":"Recently added"}],"messageID":38,"returnCode":0}))");
  EXPECT_EQ(Ask(R"({"messageID":39,"smartListName":"Größe"})", "\"messageID\":39"),
            R"(({"smartList":{"smartListID":101,"smartListName":"Größe"},"messageID":39}))");
  EXPECT_EQ(Await("\"messageID\":43"), R"(({"messageID":43}))");
  EXPECT_THAT(Ask(Request(42, R"("smartListID":101,"workgroupIDs":[1],"setIDs":[],"smartSetIDs":[])"), "filename"),
              HasSubstr("\"messageID\":41"));
  panel->SendMessage(Request(33, R"("smartListID":101,"smartListName":"Own")"));
  EXPECT_EQ(
      Ask(Request(37, R"("smartListID":101)"), "\"messageID\":37"),
      R"(({"messageID":37,"smartListID":101,"listDefinition":"c21hcnRsaXN0IDEwMSAiT3duIndvcmtncm91cCAxICJGb250IExpYnJhcnki"}))");
  panel->SendMessage(Request(36, R"("smartListID":101)"));
  // What arrives together with that message is lost.
  std::string answer;
  do answer = panel->Receive([&] { panel->SendMessage(R"({"messageID":16})"); });
  while (!answer.empty() && answer.find(":16,") == std::string::npos);
  panel->SendMessage(Request(34, R"("smartListID":101)"));
  EXPECT_THAT(Ask(R"({"messageID":38})", "\"messageID\":38"), Not(HasSubstr("101")));
  const HostResult result = host->Finish();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors,
              HasSubstr(R"(Exception left a timer: Expected JSON node "workgroupIDs" to be INTEGER, found ARRAY)"));
}

}  // namespace road
