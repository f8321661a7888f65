// Every message of the protocol over the socket, with the exact text of its reply.
#include <filesystem>

#include <algorithm>
#include <functional>

#include "panel/PanelFixture.h"
#include "support/ScopedVariable.h"

namespace {

using Transcript = PanelFixture;
using fakes::AgentFunction;

struct Row {
  const char* request;
  const char* reply;       // all messages that follow, in their order; empty for silence
  const char* asked = "";  // what the agent is asked
};

platform::Dictionary ListedFont(int id, const char* displayName, const char* postscriptName, int location) {
  platform::Dictionary font = platform::Dictionary::Create();
  font.Set("fontID", platform::Number::FromInteger(id));
  font.Set("displayName", displayName);
  font.Set("postscriptName", postscriptName);
  font.Set("activated", platform::Number::FromInteger(id % 2));
  font.Set("fontLocation", platform::Number::FromInteger(location));
  font.Set("fontIsLocal", platform::Number::FromInteger(1));
  return font;
}

TEST_F(Transcript, EveryRequestHasItsReply) {
  EXPECT_EQ(greeting, R"(({"messageID":20,"isStandalone":1})({"messageID":65}))");
  agent.Add({.id = 3, .postScriptName = "Alpha"});
  agent.smartLists = {{7, "Serif"}, {8, "Größe"}};
  agent.listTree = "a\nb";
  ui->preferences = {{"CS5PanelWidth", 300}, {"CS5PanelHeight", 400}};
  const Row kRows[] = {
      {R"({"messageID":8,"fontID":3,"postscriptName":"Alpha","displayName":"Alpha"})",
       R"(({"messageID":8,"returnCode":0}) ({"messageID":24,"fontIDs":[3]}))"},
      {R"({"messageID":9})", R"(({"messageID":9,"returnCode":0}))", "web fonts 1"},
      {R"({"messageID":10})",
       R"(({"messageID":10,"isEnabled":0,"isReplicating":0,"replicationMode":1,"returnCode":0}))"},
      {R"({"messageID":11})", R"(({"messageID":11,"height":400,"width":300}))"},
      {R"({"messageID":12,"windowWidth":410,"windowHeight":520})", ""},
      {R"({"messageID":11})", R"(({"messageID":11,"height":520,"width":410}))"},
      {R"({"messageID":13,"filename":"file:///etc/passwd"})", ""},
      {R"({"messageID":16})", ""},  // the probe itself: its reply ends the first answer
      {R"({"messageID":17,"selection":5,"savesSmartList":true})", ""},
      {R"({"messageID":17,"selection":0,"savesSmartList":false})", ""},
      {R"({"messageID":18})", R"(({"messageID":18,"selection":5,"savesSmartList":true}))"},
      {R"({"messageID":32,"highPriorityFontIDs":[3],"fontIDs":[3,4],"smartListID":7})", "",
       "render 1:3 2:3,4 7 14 400 30 1"},
      {R"({"messageID":32,"highPriorityFontIDs":[],"fontIDs":[4],"smartListID":0})", "",
       "render 0:null 1:4 0 14 400 30 1"},
      {R"({"messageID":32,"highPriorityFontIDs":[3],"fontIDs":[],"smartListID":7})", ""},
      {R"({"messageID":33,"smartListID":7,"smartListName":"Sans"})", "", "rename 7 Sans"},
      {R"({"messageID":34,"smartListID":7})", "", "delete 7"},
      {R"({"messageID":35,"smartListID":7,"workgroupIDs":[1],"setIDs":[2],"smartSetIDs":[]})",
       R"(({"messageID":41,"smartListID":7,"fontIDs":[3]}))", "query 1:1 1:2 0:null"},
      {R"({"messageID":35,"smartListID":7,"workgroupIDs":[],"setIDs":[2,5],"smartSetIDs":[6]})",
       R"(({"messageID":41,"smartListID":7,"fontIDs":[3]}))", "query 0:null 2:null 1:6"},
      {R"({"messageID":37,"smartListID":7})", R"(({"messageID":37,"smartListID":7,"listDefinition":"YWI="}))"},
      {R"({"messageID":38})", R"(({"smartLists":[{"smartListID":7,"smartListName":"Serif"},)"
                              R"({"smartListID":8,"smartListName":"Größe"}],"messageID":38,"returnCode":0}))"},
      {R"({"messageID":39,"smartListName":"New"})",
       R"(({"smartList":{"smartListID":12,"smartListName":"New"},"messageID":39}))", "create New 0:null 0:null 0:null"},
      {R"({"messageID":44,"smartListName":"Sans","smartListID":7})", "", "rename 7 Sans"},
      {R"({"messageID":47,"fontID":3,"version":"1.2"})", "", "click 3 1.2"},
      {R"({"messageID":48})", ""},
      {R"({"messageID":49})", R"(({"messageID":49,"isLoggedIn":1,"isOnline":1,"isReplicating":0,)"
                              R"("replicationMode":1,"server":"","port":"","username":""}))"},
      {R"({"messageID":51})", ""},
      {R"({"messageID":58})", R"(({"messageID":58,"canAccessGoogleFonts":1}))"},
      {R"({"messageID":59})", R"(({"messageID":49,"isLoggedIn":1,"isOnline":1,"isReplicating":0,)"
                              R"("replicationMode":1,"server":"","port":"","username":""}))"},
      {R"({"messageID":66})", R"(({"messageID":20,"isStandalone":1}) ({"messageID":65}))"},
      {R"({"messageID":14})", ""},
      {R"({"messageID":68})", ""},
  };
  for (const Row& row : kRows) {
    if (std::string(row.request) == kProbe) continue;
    EXPECT_EQ(Ask(row.request), row.reply) << row.request;
    EXPECT_EQ(TakeAsked(), *row.asked ? Lines{row.asked} : Lines{}) << row.request;
  }
  EXPECT_EQ(TracedLines("Unknown operator ID"),
            (Lines{"Unknown operator ID from panel '14'.", "Unknown operator ID from panel '68'."}));
  EXPECT_TRUE(Traced("Entering RenameSmartList()") && Traced("Exiting RenameSmartList()"));
}

TEST_F(Transcript, ListsOfFontsAreFilesThatThePanelDeletes) {
  agent.listedFonts = {ListedFont(1, "Größe\t2", "Size", 3), ListedFont(2, "B", "Größe", 4), ListedFont(3, "C", "C", 9),
                       ListedFont(4, "D", "D", 10), ListedFont(5, "E", "E", 11)};
  const std::string kContent =
      "1\tGröße\t2\tSize\t1\tdesktop\t1\n2\tB\t\t0\tsystem\t1\n3\tC\tC\t1\t\t1\n"
      "4\tD\tD\t0\tgoogle\t1\n5\tE\tE\t1\ttypekit\t1\n";
  const std::string reply = Ask(R"({"messageID":40,"smartListID":7})");
  EXPECT_EQ(ContentOf(reply), kContent);
  const std::string other = Ask(R"({"messageID":42,"smartListID":7,"workgroupIDs":[],"setIDs":[],"smartSetIDs":[9]})");
  EXPECT_EQ(ContentOf(other), kContent);
  EXPECT_EQ(TakeAsked(), Lines{"set 7 0:null 0:null 1:9"});
  const auto deletion = [](const std::string& list) {
    return R"({"messageID":13,)" + list.substr(17, list.size() - 18);
  };
  const auto pathIn = [](const std::string& list) { return list.substr(36, list.size() - 39); };
  ASSERT_TRUE(std::filesystem::exists(pathIn(reply)));
  MarquineGlobals::SetConnectedToCore(false);  // a panel may tidy up when the agent has gone
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Ask(deletion(reply)), "");
  EXPECT_FALSE(std::filesystem::exists(pathIn(reply)));
  EXPECT_TRUE(std::filesystem::exists(pathIn(other)));
  EXPECT_EQ(Ask(deletion(other)), "");
  MarquineGlobals::SetConnectedToCore(true);
  agent.listedFonts.clear();
  const std::string empty = Ask(R"({"messageID":40,"smartListID":7})");
  EXPECT_EQ(ContentOf(empty), "");
  EXPECT_TRUE(std::filesystem::remove(pathIn(empty)));
  const test_support::ScopedVariable nowhere("TMPDIR", "/nonexistent");
  EXPECT_EQ(Ask(R"({"messageID":40,"smartListID":7})"), R"(({"messageID":19}))");
}

TEST_F(Transcript, TheAgentsFailuresAreSilentOrCodes) {
  agent.Add({.id = 3, .postScriptName = "Alpha"});
  const struct {
    AgentFunction function;
    Row row;
  } kRows[] = {
      {AgentFunction::SetGoogleWebFontsEnabled, {R"({"messageID":9})", R"(({"messageID":9,"returnCode":42}))"}},
      {AgentFunction::GetFontInfoByID,
       {R"({"messageID":8,"fontID":3,"postscriptName":"Alpha","displayName":"Alpha"})",
        R"(({"messageID":8,"returnCode":42}))"}},
      {AgentFunction::ActivateFonts,
       {R"({"messageID":8,"fontID":3,"postscriptName":"Alpha","displayName":"Alpha"})",
        R"(({"messageID":8,"returnCode":42}) ({"messageID":24,"fontIDs":[3]}))"}},
      {AgentFunction::GetFontConflicts,
       {R"({"messageID":8,"fontID":3,"postscriptName":"Alpha","displayName":"Alpha"})",
        R"(({"messageID":46,"fontID":3,"conflictID":0,"isConflictError":true}) ({"messageID":8,"returnCode":0}))"}},
      {AgentFunction::GetAllSmartLists, {R"({"messageID":38})", ""}},
      {AgentFunction::GetSmartList, {R"({"messageID":36,"smartListID":7})", ""}},
      {AgentFunction::GetPanelSmartListTree,
       {R"({"messageID":37,"smartListID":7})", R"(({"messageID":37,"smartListID":7}))"}},
      {AgentFunction::CreateSmartList, {R"({"messageID":39,"smartListName":"New"})", ""}},
      {AgentFunction::GetSmartListFonts, {R"({"messageID":40,"smartListID":7})", ""}},
      {AgentFunction::GetAllWorkgroupsForUser, {R"({"messageID":66})", R"(({"messageID":20,"isStandalone":1}))"}},
  };
  for (const auto& [function, row] : kRows) {
    agent.FailNext(function, 42);
    EXPECT_EQ(Ask(row.request), row.reply) << row.request;
  }
}

TEST_F(Transcript, WithoutAgentOnlySomeRequestsAreAnswered) {
  const Row kRows[] = {
      {R"({"messageID":8})", R"(({"messageID":8,"returnCode":0}))"},  // not even parsed
      {R"({"messageID":9})", R"(({"messageID":9,"returnCode":0}))"},
      {R"({"messageID":10})",
       R"(({"messageID":10,"isEnabled":0,"isReplicating":0,"replicationMode":1,"returnCode":0}))"},
      {R"({"messageID":11})", ""},
      {R"({"messageID":12,"windowWidth":1,"windowHeight":1})", ""},
      {R"({"messageID":17,"selection":5,"savesSmartList":true})", ""},
      {R"({"messageID":18})", ""},
      {R"({"messageID":32})", ""},
      {R"({"messageID":33})", ""},
      {R"({"messageID":36,"smartListID":7})", ""},
      {R"({"messageID":38})", R"(({"messageID":38,"returnCode":0}))"},
      {R"({"messageID":40,"smartListID":7})", ""},
      {R"({"messageID":49})", ""},
      {R"({"messageID":66})", R"(({"messageID":20,"isStandalone":1}))"},
  };
  MarquineGlobals::SetConnectedToCore(false);
  const auto preferences = ui->preferences;
  for (const Row& row : kRows) EXPECT_EQ(Ask(row.request), row.reply) << row.request;
  EXPECT_EQ(ui->preferences, preferences);
  EXPECT_TRUE(TakeAsked().empty());
  // The queue was kept: whether there is a Typekit library.
  MarquineGlobals::SetConnectedToCore(true);
  EXPECT_EQ(Ask(R"({"messageID":48})"), R"(({"messageID":65}))");
  // A panel gets nothing at all while the services are off.
  MarquineGlobals::SetPluginServicesEnabled(false);
  for (const Row& row : kRows) client->SendMessage(row.request);
  client->Settle();
  manager.SelectSocket(true);
  MarquineGlobals::SetPluginServicesEnabled(true);
  EXPECT_EQ(Heard(), "");
}

TEST_F(Transcript, BadRequestsAreLoggedAndNotAnswered) {
  LogRecorder log(GLogger::kDebug);
  const struct {
    const char* request;
    const char* code;
    const char* expression;
  } kRows[] = {
      {R"({"messageID":12,"windowWidth":9})", "kNotFound",
       "GJSONUtils::GetValueForKey(jsonValue, kWindowHeightKey, windowHeight)"},
      {R"({"messageID":17,"selection":1,"savesSmartList":1})", "kError",
       "GJSONUtils::GetValueForKey(jsonValue, kSavesSmartListKey, savesSmartList)"},
      {R"({"messageID":32,"fontIDs":[1],"smartListID":1})", "kNotFound",
       "GJSONUtils::GetValueForKey(jsonValue, kHighPriorityFontIDsKey, highPriorityFontIDs)"},
      {R"({"messageID":33,"smartListID":"7","smartListName":"a"})", "kError",
       "GJSONUtils::GetValueForKey(jsonValue, kSmartListIDKey, smartListID)"},
      {R"({"messageID":35,"smartListID":7,"workgroupIDs":[],"setIDs":{},"smartSetIDs":[]})", "kError",
       "GJSONUtils::GetValueForKey(jsonValue, kSetIDsKey, setIDs)"},
      {R"({"messageID":8,"fontID":1,"displayName":"a"})", "kNotFound",
       "GJSONUtils::GetValueForKey(jsonValue, kPostscriptNameKey, postscriptNameStr)"},
  };
  for (const auto& row : kRows) {
    log.lines.clear();
    EXPECT_EQ(Ask(row.request), "") << row.request;
    const auto isReport = [&](const std::string& line) {
      return line.find(std::string("Error='CoreErrorCodes::") + row.code) != std::string::npos &&
             line.find(std::string("Expression='") + row.expression + "'") != std::string::npos;
    };
    EXPECT_TRUE(std::any_of(log.lines.begin(), log.lines.end(), isReport))
        << row.request << testing::PrintToString(log.lines);
  }
  agent.FailNext(AgentFunction::RenameSmartList, 42);
  log.lines.clear();
  EXPECT_EQ(Ask(R"({"messageID":44,"smartListName":"a","smartListID":7})"), "");
  EXPECT_NE(testing::PrintToString(log.lines).find(
                "Expression='VPILoader::GetSharedInstance()->pfRenameSmartList "
                "(VPILoader::GetSharedInstance()->pfGetPluginFacadeInstance(), smartListID, name.c_str())'"),
            std::string::npos);
}

// The exception goes to the run loop, which reports it, and the panel works on.
TEST_F(Transcript, SomeMessagesEndInAnException) {
  agent.smartLists = {{7, "Serif"}};
  const struct {
    const char *request, *what;
  } kRows[] = {
      {R"({"messageID":36,"smartListID":7})", R"(Expected JSON node "workgroupIDs" to be INTEGER, found ARRAY)"},
      {R"({"messageID":32,"highPriorityFontIDs":[1,"x"],"fontIDs":[1],"smartListID":1})", "to be INTEGER"},
      {"{\"messageID\":39,\"smartListName\":\"\xED\xA0\x80\"}", "Unable to convert string"},
  };
  for (const auto& row : kRows) {
    client->SendMessage(row.request);
    client->Settle();
    try {
      manager.SelectSocket(true);
      ADD_FAILURE() << row.request;
    } catch (const std::runtime_error& error) {
      EXPECT_NE(std::string(error.what()).find(row.what), std::string::npos) << error.what();
    }
    EXPECT_EQ(Heard(), "");
  }
}

TEST_F(Transcript, ALoginIsToldWithoutServerAndUser) {
  agent.isStandalone = agent.isLoggedIn = agent.isOnline = false;
  agent.isReplicating = true;
  agent.replicationMode = 3;
  ui->texts = {{"LastAddress", "server"}, {"LastPort", "8080"}, {"LastUsername", "me"}};
  EXPECT_EQ(Ask(R"({"messageID":49})"), R"(({"messageID":49,"isLoggedIn":0,"isOnline":0,"isReplicating":1,)"
                                        R"("replicationMode":3,"server":"","port":"8080","username":""}))");
  EXPECT_EQ(ui->texts.at("LastAddress"), "server");
}

TEST_F(Transcript, TheFirstWebFontsShowAllWorkgroupsOnce) {
  ui->preferences["CurrentWorkgroup"] = 5;
  agent.isWebFontsEnabled = true;
  const std::string reply = R"(({"messageID":10,"isEnabled":1,"isReplicating":0,"replicationMode":1,"returnCode":0}))";
  EXPECT_EQ(Ask(R"({"messageID":10})"), reply);
  EXPECT_EQ(ui->preferences["CurrentWorkgroup"], -2);
  ui->preferences["CurrentWorkgroup"] = 5;
  EXPECT_EQ(Ask(R"({"messageID":10})"), reply);
  EXPECT_EQ(ui->preferences["CurrentWorkgroup"], 5);
}

TEST_F(Transcript, AFamilyIsActivatedWithTheFont) {
  agent.Add({.id = 1, .postScriptName = "Alpha", .displayName = "Alpha"});
  agent.Add({.id = 2, .postScriptName = "Alpha-Bold", .displayName = "Alpha Bold"}).isRefused = true;
  agent.Add({.id = 3, .postScriptName = "Alpha-Light", .displayName = "Alpha Light"});
  const std::string request =
      R"({"messageID":8,"fontID":3,"postscriptName":"Alpha-Light","displayName":"Alpha Light"})";
  EXPECT_EQ(Ask(request), R"(({"messageID":8,"returnCode":0}) ({"messageID":24,"fontIDs":[1,3]}) )"
                          R"(({"messageID":60,"fontIDs":[2]}))");
  EXPECT_EQ(agent.arguments[AgentFunction::ActivateFonts], (std::vector<uint32_t>{0, 3, 1, 1, 0, 3}));
  // A duplicate leaves a gap, for which the last font is not sent.
  agent.Font(2).displayName = "Alpha";
  agent.Add({.id = 4, .postScriptName = "Alpha-Thin", .displayName = "Alpha Thin"});
  EXPECT_EQ(Ask(request), R"(({"messageID":8,"returnCode":0}) ({"messageID":24,"fontIDs":[1,3]}))");
  EXPECT_FALSE(agent.Font(4).isHeld);
  agent.conflicts[3] = 9;
  EXPECT_EQ(Ask(request), R"(({"messageID":46,"fontID":3,"conflictID":9,"isConflictError":true}) )"
                          R"(({"messageID":8,"returnCode":0}))");
}

// The agent's family need not contain the font itself.
TEST_F(Transcript, AFontOutsideItsFamilyIsActivatedWithAllOfIt) {
  agent.Add({.id = 1, .postScriptName = "Alpha", .displayName = "Alpha"});
  agent.Add({.id = 2, .postScriptName = "Beta", .displayName = "Beta"});
  agent.onCall = [this](AgentFunction function) {
    if (function == AgentFunction::FindFontsInSameFamilyForActivation) agent.Add({.id = 3, .postScriptName = "Gamma"});
    if (function == AgentFunction::FindFontsInSameFamilyForActivation) agent.Font(1).familyID = 77;
  };
  EXPECT_EQ(Ask(R"({"messageID":8,"fontID":1,"postscriptName":"Alpha","displayName":"Alpha"})"),
            R"(({"messageID":8,"returnCode":0}) ({"messageID":24,"fontIDs":[1,2,3]}))");
}

TEST_F(Transcript, NewsIsQueuedAndCoalesced) {
  using Push = std::function<void(PanelManager&)>;
  platform::Dictionary progress = platform::Dictionary::Create();
  progress.Set("text", "Fonts");
  progress.Set("stepIndex", platform::Number::FromInteger(2));
  progress.Set("numSteps", platform::Number::FromInteger(9));
  const std::string steps = R"(,"text":"Fonts","stepIndex":2,"numSteps":9}))";
  const struct {
    Push push;
    std::string heard;
  } kRows[] = {
      {[](auto& m) {
         for (const unsigned id : {9u, 4u, 9u}) m.PushFontActivatedNotification(id);
       },
       R"(({"messageID":24,"fontIDs":[4,9]}))"},
      {[](auto& m) {
         m.PushFontActivatedNotification(4);
         m.PushFontDeactivatedNotification(4);
       },
       R"(({"messageID":24,"fontIDs":[]}) ({"messageID":25,"fontIDs":[4]}))"},
      {[](auto& m) {
         m.PushFontDeactivatedNotification(4);
         m.PushFontMissingNotification(4);
         m.PushFontNonCompliantNotification(4);
         m.PushFontActivatedNotification(4);
       },
       R"(({"messageID":24,"fontIDs":[4]}) ({"messageID":25,"fontIDs":[]}) ({"messageID":45,"fontIDs":[4]}) )"
       R"(({"messageID":60,"fontIDs":[4]}))"},
      {[](auto& m) {
         m.PushTypekitEnabledNotification(true);
         m.PushDataChangedNotification();
         m.PushSmartListsChangedNotification();
         m.PushOfflineDownloadFinishedNotification();
         m.PushLoggedInStateChangedNotification(kServerTypeIgnored);
         m.PushGoogleWebFontsEnabledNotificaton(true);
         m.PushGoogleWebFontsEnabledNotificaton(false);
         m.PushSmartListsChangedNotification();
       },
       R"(({"messageID":22}) ({"messageID":23}) ({"messageID":43}) ({"messageID":50}) ({"messageID":56}) )"
       R"(({"messageID":63}) ({"messageID":64}))"},
      {[](auto& m) {
         m.PushBulkReplicationStoppedNotification();
         m.PushIncrementalReplicationStoppedNotification();
         m.PushGoogleReplicationStoppedNotification();
         m.PushFontServerReplicationStoppedNotification();
       },
       R"(({"messageID":29}) ({"messageID":53}) ({"messageID":55}) ({"messageID":69}))"},
      {[&](auto& m) {
         m.PushDataChangedNotification();
         m.PushBulkReplicationProgressNotification(progress);
         m.PushBulkReplicationProgressNotification(progress);
         m.PushIncrementalReplicationProgressNotification(progress);
         m.PushGoogleReplicationProgressNotification(progress);
         m.PushFontServerReplicationProgressNotification(progress);
       },
       R"(({"messageID":52)" + steps + R"( ({"messageID":52)" + steps + R"( ({"messageID":54)" + steps +
           R"( ({"messageID":28)" + steps + R"( ({"messageID":68)" + steps + R"( ({"messageID":56}))"},
      {[](auto& m) { m.SetEnabled(false); }, R"(({"messageID":30,"isEnabled":false}))"},
      {[](auto& m) { m.PushOnlineStateChangedNotification(false); }, R"(({"messageID":62}))"},
      {[this](auto& m) {
         agent.isStandalone = false;
         m.PushOnlineStateChangedNotification(false);
       },
       R"(({"messageID":61}))"},
  };
  for (const auto& row : kRows) {
    row.push(manager);
    manager.PopNotifications();
    EXPECT_EQ(Heard(), row.heard);
  }
  MarquineGlobals::SetConnectedToCore(false);
  manager.PushDataChangedNotification();
  manager.PushFontActivatedNotification(4);
  manager.PushBulkReplicationProgressNotification(progress);
  manager.PushOnlineStateChangedNotification(true);
  manager.PushTypekitEnabledNotification(false);
  manager.PopNotifications();
  EXPECT_EQ(Heard(), "");
  MarquineGlobals::SetConnectedToCore(true);
  manager.PopNotifications();
  EXPECT_EQ(Heard(), R"(({"messageID":62}) ({"messageID":65}))");
}

TEST_F(Transcript, AWorkgroupOfItsTypeIsATypekitLibrary) {
  agent.workgroups = {{5, "Library", "1"}, {6, "Typekit", "9"}, {7, "More", "9"}};
  manager.CheckForTypekit();
  manager.PopNotifications();
  EXPECT_EQ(Heard(), R"(({"messageID":64}))");
}

}  // namespace
