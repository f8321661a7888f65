// Each problem is reported in one line, everything else continues, and no stored data is lost.
#include <gmock/gmock.h>

#include <filesystem>

#include "platform/ChildLimits.h"
#include "road/RoadFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace road {

namespace {

std::string Bytes(const std::string& path) { return test_support::TempFolder::Content(path); }

class BadInput : public RoadTest {};

}  // namespace

TEST_F(BadInput, DocumentsAreToldAndTheOthersGoOn) {
  const std::string poster = Bytes(kPoster);
  struct Case {
    std::string path;
    const char* told;
  };
  const Case cases[] = {
      {folder_.Write("cut.psd", poster.substr(0, poster.size() / 2)), "truncated"},
      {"/proc/self/mem", ""},  // exists and cannot be read by any user
      {"", "No such file"},
  };
  std::vector<std::string> files = {"--"};
  for (const Case& each : cases) files.push_back(each.path);
  files.push_back(kPoster);
  const HostResult result = RunHost(Arguments(files));
  EXPECT_EQ(result.status, 1);
  const std::vector<std::string> errors = Errors(result);
  ASSERT_THAT(errors, SizeIs(std::size(cases)));
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_THAT(errors[i], testing::StartsWith(cases[i].path + ": "));
    EXPECT_THAT(errors[i], HasSubstr(cases[i].told));
    EXPECT_EQ(errors[i].find('\n'), std::string::npos);
  }
  EXPECT_THAT(Events(result, "opened"), SizeIs(1));
  EXPECT_THAT(Events(result, "closed"), SizeIs(1));
  EXPECT_EQ(Bytes(folder_ / "cut.psd"), poster.substr(0, poster.size() / 2));
}

// Problems of the plug-in and its frameworks during the host's operations.
TEST_F(BadInput, WhatOnlyThePluginMetIsAnErrorOncePerOpenAndSave) {
  std::string deep =
      "<?xpacket begin=\"\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
      "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" xmlns:t=\"t:/\"><t:list>";
  for (int i = 0; i < 600; ++i) deep += "<rdf:Bag><rdf:li>";
  deep += "text";
  for (int i = 0; i < 600; ++i) deep += "</rdf:li></rdf:Bag>";
  deep += "</t:list></rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>  ";
  deep.resize(deep.size() / 2 * 2);
  const auto number = [](size_t value) {
    return std::string{'\0', static_cast<char>(value >> 16), static_cast<char>(value >> 8), static_cast<char>(value)};
  };
  const std::string resource = std::string("8BIM\x04\x24\0\0", 8) + number(deep.size()) + deep;
  constexpr size_t kResources = 30;
  const std::string sample = Bytes(kPoster);
  size_t end = kResources + 4;
  for (size_t i = 0, size = 0; i < 4; ++i, end = kResources + 4 + size) {
    size = size << 8 | static_cast<uint8_t>(sample[kResources + i]);
  }
  const std::string document =
      folder_.Write("deep.psd", sample.substr(0, kResources) + number(resource.size()) + resource + sample.substr(end));
  const HostResult read = RunScript("open " + document + "\nwait 6\nedit\nsave\nclose\n");
  EXPECT_EQ(read.status, 1);
  const std::string line = document + ": its metadata has more than 1000 levels";
  EXPECT_THAT(Errors(read), ElementsAre(line, line));

  const std::string preferences = state_.Path() + "/preferences.plist";
  std::filesystem::remove(preferences);
  std::filesystem::create_directory(preferences);
  const HostResult unwritten = RunScript("open " + kNoText + "\n");
  EXPECT_EQ(unwritten.status, 1);
  EXPECT_THAT(Errors(unwritten), testing::Contains(HasSubstr(preferences + ": ")));
}

TEST_F(BadInput, LimitOfTheSystemIsToldAndTheOthersGoOn) {
  std::string names = "/FontSet [";
  while (names.size() < 24'000'000) names += "/Name ()";
  struct Case {
    const char* limit;
    std::string document, commands, told;
    size_t opened;
  };
  // Behind the picture, other programs leave data of their own. Each of the names takes four times its bytes in memory.
  std::vector<Case> cases = {
      {"--fsize=20000000", folder_.Write("documents/large.psd", Bytes(kNoText) + std::string(24'000'000, 'x')),
       "edit C059-Bold\nsave\n", ": File too large", 2},
      {"--data=100000000", folder_.Write("documents/names.ai", names + "]"), "", ": there is not enough memory", 1}};
  if (platform::kIsSanitized) cases.pop_back();  // a sanitizer takes more memory than that
  const std::string poster = folder_.Write("poster.psd", Bytes(kPoster));
  const auto scriptFor = [&poster](const std::string& document, const std::string& commands) {
    return "open " + poster + "\nopen " + document + "\n" + commands + "save " + poster;
  };
  for (const auto& [limit, document, commands, told, opened] : cases) {
    const std::string before = Bytes(document);
    const std::string script = folder_.Write("script", scriptFor(document, commands));
    std::vector<std::string> arguments = {limit, HostProcess::BuiltHost()};
    for (const std::string& each : Arguments({"--script", script})) arguments.push_back(each);
    const HostResult result = RunHost(arguments, "/usr/bin/prlimit");
    EXPECT_EQ(result.status, 1) << result.errors;
    EXPECT_THAT(Errors(result), ElementsAre(document + told));
    EXPECT_THAT(Events(result, "opened"), SizeIs(opened));
    EXPECT_THAT(Events(result, "saved"), SizeIs(1));
    EXPECT_TRUE(Bytes(document) == before) << document;
  }
  const std::filesystem::directory_iterator files(folder_ / "documents");
  EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "nothing is left beside them";
}

TEST_F(BadInput, LibraryIsUsedAsFarAsItCanBeRead) {
  const std::string font = Bytes("/usr/share/fonts/truetype/liberation2/LiberationSerif-Bold.ttf");
  folder_.Write("library/good.ttf", font);
  folder_.Write("library/cut.ttf", font.substr(0, 2000));
  std::filesystem::create_symlink("/nowhere/at/all", folder_ / "library/dangling.otf");
  const HostResult result = RunHost({"--json", "--state", state_.Path(), "--library", folder_ / "library", "--library",
                                     folder_ / "no such folder", kPoster});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(Errors(result), testing::UnorderedElementsAre(HasSubstr("library/cut.ttf: "),
                                                            HasSubstr("library/dangling.otf: the link leads nowhere"),
                                                            HasSubstr("no such folder: No such file")));
  const std::vector<Json> opened = Events(result, "opened");
  ASSERT_THAT(opened, SizeIs(1));
  EXPECT_EQ(opened[0]["activated"][0]["file"], folder_ / "library/good.ttf");
}

TEST_F(BadInput, StateThatCannotBeUsedIsLeftAsItIs) {
  const std::string file = folder_.Write("file", "mine");
  folder_.Write("broken/nexcore.json", "{\"library\": [");
  struct Case {
    std::string state;
    const char* told;
  };
  const Case cases[] = {
      {file, "is not a folder"},
      {file + "/below", "Not a directory"},
      {folder_ / "broken", "nexcore.json: is not a JSON object"},
      {folder_ / "a#b", "'#'"},
  };
  for (const Case& each : cases) {
    const HostResult result = RunHost({"--json", "--state", each.state, kPoster});
    EXPECT_EQ(result.status, 1) << each.state;
    EXPECT_THAT(Errors(result), ElementsAre(HasSubstr(each.told)));
    EXPECT_THAT(Events(result, "opened"), IsEmpty());
  }
  EXPECT_EQ(Bytes(file), "mine");
  EXPECT_EQ(Bytes(folder_ / "broken/nexcore.json"), "{\"library\": [");
}

TEST_F(BadInput, StoreOfTheUserThatIsDamagedIsKeptAndNothingIsActivated) {
  folder_.Write("state/agent/user.db", "this is no database, and it is the user's");
  const HostResult result = RunHost(Arguments({kPoster}));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(Errors(result), ElementsAre(HasSubstr("Nexcore: ")));
  EXPECT_EQ(Bytes(folder_ / "state/agent/user.db"), "this is no database, and it is the user's");
  ASSERT_THAT(Events(result, "opened"), SizeIs(1));
  EXPECT_THAT(Events(result, "opened")[0]["activated"], IsEmpty());
}

TEST_F(BadInput, IdentificationThatCannotBeWrittenIsTold) {
  // Without room for metadata in it.
  const std::string document =
      folder_.Write("no-packet.pdf", "%PDF-1.4\n/FontSet [ << /Name (DejaVuSans) >> ]\nstartxref\n0\n%%EOF\n");
  const HostResult result = RunHost(Arguments({document, kNoText}));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(Errors(result), ElementsAre(HasSubstr("the identification of its fonts could not be written")));
  EXPECT_THAT(Events(result, "saved"), SizeIs(2));
}

TEST_F(BadInput, WithoutAgentOrFrameworksDocumentsOpenAllTheSame) {
  const std::string agent = "agent/Nexcore", interface = "agent/VelorantPluginInterface.framework",
                    boxes = "agent/PluginFiles", events = "host/Frameworks";
  struct Case {
    std::set<std::string> leftOut;
    std::vector<std::string> told;
    bool activates;
  };
  const Case cases[] = {
      {{agent, interface, boxes},
       {"VelorantPluginInterface.framework", "VelorantPlugins.framework", "agent/Nexcore: "},
       false},
      {{interface}, {"VelorantPluginInterface.framework: can't be loaded"}, false},
      {{boxes}, {"VelorantPlugins.framework: can't be loaded"}, false},
      {{events}, {"PlugPlug.framework: can't be loaded, so that there is no font panel"}, true},
  };
  for (const bool isBroken : {false, true}) {
    for (const Case& each : cases) {
      const std::string host = LayOut(each.leftOut);
      if (isBroken) {
        if (!each.leftOut.contains(interface)) continue;
        const std::string info = "VelorantPluginInterface.framework/Info.plist";
        folder_.Write("app/agent/" + info, Bytes(APP_DIR "/agent/" + info));
        folder_.Write("app/agent/VelorantPluginInterface.framework/VelorantPluginInterface", "no shared object");
      }
      const HostResult result = RunHost(Arguments({kPoster, kNoText}), host);
      EXPECT_EQ(result.status, 1);
      const std::vector<std::string> errors = Errors(result);
      ASSERT_THAT(errors, SizeIs(each.told.size())) << testing::PrintToString(errors);
      for (size_t i = 0; i < errors.size(); ++i) EXPECT_THAT(errors[i], HasSubstr(each.told[i]));
      const std::vector<Json> opened = Events(result, "opened");
      ASSERT_THAT(opened, SizeIs(2));
      EXPECT_THAT(opened[0]["missing"], SizeIs(each.activates ? 0 : 3));
      EXPECT_THAT(Events(result, "saved"), SizeIs(2));
      state_.EndAgent(SIGTERM);
    }
  }
}

TEST_F(BadInput, FrameworkThatLacksAFunctionIsTold) {
  const std::string host = LayOut({"agent/VelorantPluginInterface.framework"});
  const std::string bundle = "VelorantPluginInterface.framework/", object = bundle + "VelorantPluginInterface";
  std::string bytes = Bytes(APP_DIR "/agent/" + object);
  const std::string name("\0GetFontVaultPath", 17);
  const size_t at = bytes.find(name);
  ASSERT_NE(at, std::string::npos);
  bytes[at + 1] = 'J';
  folder_.Write("app/agent/" + object, bytes);
  folder_.Write("app/agent/" + bundle + "Info.plist", Bytes(APP_DIR "/agent/" + bundle + "Info.plist"));
  const HostResult result = RunHost(Arguments({kPoster}), host);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(Errors(result), ElementsAre(HasSubstr("lacks functions that the plug-in needs: GetFontVaultPath")));
}

TEST_F(BadInput, CommandLinesAndScriptsThatAreNotUnderstoodDoNothing) {
  const std::string script = folder_.Write("script", "make\n\nfrob 'x'\n");
  struct Case {
    std::vector<std::string> arguments;
    int status;
    std::string told;
  };
  const Case cases[] = {
      {{"--frob"}, 2, "unknown option '--frob'"},
      {{}, 2, "no documents"},
      {{"--script", script}, 2, script + ":3: unknown command 'frob'"},
      {{"--script", folder_ / "none"}, 1, "No such file or directory"},
  };
  for (const Case& each : cases) {
    std::vector<std::string> arguments = {"--state=" + state_.Path()};
    arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
    const HostResult result = RunHost(arguments);
    EXPECT_EQ(result.status, each.status);
    EXPECT_THAT(result.errors, HasSubstr(each.told));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_FALSE(std::filesystem::exists(state_.Path()));
  }
}

}  // namespace road
