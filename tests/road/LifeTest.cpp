// Documents and programs over time: what they share and store, and what a killed program leaves behind.
#include <gmock/gmock.h>
#include <sys/syscall.h>

#include <filesystem>

#include "road/RoadFixture.h"
#include "support/ScopedVariable.h"

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace road {

namespace {

const std::vector<std::string> kPostersFonts = {"LiberationSerif-Bold", "NimbusSans-Bold", "NimbusSans-Regular"};

using test_support::ScopedVariable;

class Life : public RoadTest {
 protected:
  std::string CopyOf(const std::string& document, const std::string& name) const {
    std::filesystem::copy_file(document, folder_ / name);
    return folder_ / name;
  }
};

class Desktop : public Life {
 protected:
  // Links to fonts in the user's font folder, of all agents.
  size_t CountLinks() const {
    size_t count = 0;
    std::error_code none;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(fonts_, none)) {
      count += !entry.is_directory() && !entry.path().filename().string().starts_with(".");
    }
    return count;
  }
  std::vector<std::string> ArgumentsOf(const StateFolder& state, const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = Arguments(more);
    *std::find(arguments.begin(), arguments.end(), state_.Path()) = state.Path();
    return arguments;
  }

  const std::string data_ = folder_ / "data", fonts_ = data_ + "/fonts";
  const ScopedVariable userData_{"XDG_DATA_HOME", data_};
  const ScopedVariable configuration_{"FONTCONFIG_FILE", folder_.WriteFontsConf({fonts_})};
  StateFolder other_{folder_ / "other"};
};

}  // namespace

TEST_F(Life, OtherProgramsSeeTheFontsAsLongAsADocumentNeedsThem) {
  const std::string second = CopyOf(kPoster, "second.psd");
  HostProcess host(Arguments({"--interactive"}));
  // The document is closed and reopened soon, while the console waits for the next command.
  host.Send("set CloseFontsOnDocClose 1\nset RMF5 1\nopen " + kPoster);
  host.NextEvent("opened");
  EXPECT_THAT(state_.NamesByFontList(), IsSupersetOf(kPostersFonts));
  host.Send("open " + second);
  EXPECT_THAT(host.NextEvent("opened")["active"], SizeIs(4));  // DejaVuSans and the three
  host.Send("close " + kPoster);
  EXPECT_THAT(host.NextEvent("closed")["deactivated"], IsEmpty());
  EXPECT_THAT(state_.NamesByFontList(), IsSupersetOf(kPostersFonts));
  host.Send("close");
  EXPECT_EQ(host.NextEvent("closed")["deactivated"], Json(kPostersFonts));
  EXPECT_THAT(state_.NamesByFontList(), Not(Contains("NimbusSans-Bold")));
  EXPECT_EQ(host.Finish().status, 0);
}

TEST_F(Life, AFamilyNameIsMissingThoughAFaceOfTheFamilyIsActive) {
  const std::string document = CopyOf(kNoText, "family.psd");
  const std::string saved = folder_ / "saved.psd";
  const HostResult result =
      RunScript("open " + document + "\nedit Z003-MediumItalic\nsave-as " + saved + "\nclose\nopen " + saved +
                "\nwait 1\nedit Z003\nsave\nclose\nopen " + saved + "\nclose\n");
  const std::vector<Json> opened = Events(result, "opened");
  ASSERT_THAT(opened, SizeIs(3));
  EXPECT_EQ(opened[2]["active"], Json({"Z003-MediumItalic"}));
  EXPECT_EQ(opened[2]["missing"], Json({"Z003"}));
}

TEST_F(Life, SavedDocumentChoosesTheSameFilesElsewhere) {
  const std::string saved = folder_ / "saved.psd";
  const HostResult first = RunScript("open " + kPoster + "\nsave-as " + saved + "\n", "liberation,t1");
  EXPECT_EQ(Events(first, "saved").at(0)["file"], saved);

  const std::string read = OutputOf("exiftool -a -G1 -XMP:all '" + saved + "'");
  for (const char* text : {"NimbusSans-Bold", "LiberationSerif-Bold", "DejaVuSans"}) EXPECT_THAT(read, HasSubstr(text));

  // All files are available now. Without the document's data another format would be chosen.
  const StateFolder fresh(folder_ / "fresh");
  std::vector<std::string> arguments = {"--json", "--state", fresh.Path()};
  for (const std::string& each : LibraryFolders("urw,liberation"))
    arguments.insert(arguments.end(), {"--library", each});
  arguments.push_back(saved);
  const HostResult second = RunHost(arguments);
  EXPECT_EQ(second.status, 0);
  const auto files = [](const HostResult& result) {
    std::vector<std::string> names;
    const Json opened = Events(result, "opened").at(0);
    for (const Json& font : opened["activated"]) names.push_back(font["file"]);
    return names;
  };
  EXPECT_EQ(files(second), files(first));
  EXPECT_THAT(Events(second, "opened")[0]["activated"][1]["why"], HasSubstr("perfect match"));

  // Where fonts are missing, the user hears before the save what it takes out.
  const StateFolder poor(folder_ / "poor");
  const HostResult third = RunHost({"--json", "--state", poor.Path(), "--library", LibraryFolders("liberation")[0],
                                    "--script", folder_.Write("save", "open " + saved + "\nedit\nsave\n")});
  const Json lost = {"NimbusSans-Regular", "NimbusSans-Bold"};
  EXPECT_EQ(Events(third, "saving").at(0)["atRisk"], lost);
  EXPECT_EQ(Events(third, "saved").at(0)["lost"], lost);
}

// The document was saved when the library had exactly this file and no newer one.
TEST_F(Life, StoredChecksumGoesBeforeANewerFile) {
  const std::string original = "/usr/share/fonts/truetype/liberation2/LiberationSerif-Bold.ttf";
  std::string font = test_support::TempFolder::Content(original);
  const std::string version("\0002\0.\0001\0.\0005", 10);
  const size_t at = font.find(version);
  ASSERT_NE(at, std::string::npos);
  font[at + 1] = '9';
  const std::string newer = folder_.Write("newer.ttf", font);

  const auto chosen = [&](const std::string& document) {
    const HostResult result = RunHost(Arguments({"--library", folder_.Path(), document}, "liberation"));
    const Json opened = Events(result, "opened").at(0);
    return opened["activated"].at(0)["file"].get<std::string>();
  };
  EXPECT_EQ(chosen(kPoster), newer);
  EXPECT_EQ(chosen(SOURCE_DIR "/samples/archive.psd"), original);
}

TEST_F(Life, FontsThatOnlyTheStoredDataNamesAreExplainedToo) {
  const std::string file = CopyOf(kNoText, "stored.psd"), packet = folder_ / "packet.xmp";
  OutputOf("exiftool -b -xmp '" SOURCE_DIR "/samples/archive.psd' > '" + packet + "'");
  OutputOf("exiftool -q -overwrite_original '-xmp<=" + packet + "' '" + file + "'");
  const Json activated = Events(RunHost(Arguments({file})), "opened").at(0)["activated"];
  ASSERT_THAT(activated, SizeIs(3));
  for (const Json& font : activated) EXPECT_THAT(font["why"].get<std::string>(), HasSubstr("perfect match"));
}

TEST_F(Life, DocumentsOfTheUserStayAsTheyAre) {
  const std::string mine = CopyOf(kPoster, "mine.psd");
  std::filesystem::create_directory(folder_ / "other");
  const std::string namesake = CopyOf(kNoText, "other/mine.psd");
  const HostResult result = RunHost(Arguments({mine, namesake}));
  EXPECT_EQ(folder_.Content(mine), folder_.Content(kPoster));
  EXPECT_EQ(Events(result, "saved").at(0)["file"], mine);
  EXPECT_EQ(Events(result, "saved").at(1)["file"], namesake);
  EXPECT_THAT(result.errors, HasSubstr("in the copy " + state_.Path() + "/copies/mine.psd"));
  EXPECT_THAT(result.errors, HasSubstr("in the copy " + state_.Path() + "/copies/mine-2.psd"));
}

// A demonstration deactivates fonts at the close. The user's preference must survive, however the run ends.
TEST_F(Life, DemonstrationLeavesThePreferencesAlone) {
  HostProcess host(Arguments({kPoster, kBrochure}));
  host.NextEvent("opened");
  EXPECT_THAT(host.NextEvent("closed")["deactivated"], SizeIs(3));
  EXPECT_THAT(folder_.Content(state_.Path() + "/preferences.plist"),
              HasSubstr("<key>CloseFontsOnDocClose</key>\n\t<false/>"));
}

TEST_F(Life, SignalEndsTheHostAsQuitDoes) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    HostProcess host(Arguments({"--interactive"}));
    host.Send("open " + kPoster);
    host.NextEvent("opened");
    host.Signal(signal);
    EXPECT_THAT(host.NextEvent("closed")["deactivated"], SizeIs(3));
    EXPECT_EQ(host.Finish().status, 128 + signal);
    EXPECT_THAT(state_.Links(), IsEmpty());
  }
}

TEST_F(Life, StateFolderThatIsRemovedIsToldOnce) {
  HostProcess host(Arguments({"--interactive"}));
  host.Send("open " + kPoster);
  host.NextEvent("opened");
  // Moves the folder in one step. Removing file by file would race with the host's write of its preferences.
  std::filesystem::rename(state_.Path(), folder_ / "removed");
  host.Send("edit\nopen " + kBrochure);
  const HostResult result = host.Finish();
  EXPECT_EQ(result.status, 1);
  // A write of the preferences may still be due. It fails, too, and reports that in its own event.
  const std::vector<std::string> errors = Errors(result);
  EXPECT_THAT(errors, Contains(HasSubstr("was removed or replaced")).Times(1));
  EXPECT_THAT(errors, Contains(HasSubstr("is not opened")));
}

TEST_F(Life, SecondStartGoesOnWithWhatWasStored) {
  EXPECT_EQ(RunScript("set EnableGlyphsure 0\n", "liberation,t1").status, 0);
  const std::string script = folder_.Write("again", "open " + kPoster + "\nsave-as " + folder_ / "saved.psd\n");
  const HostResult again = RunHost({"--json", "--state", state_.Path(), "--script", script});
  EXPECT_EQ(Events(again, "opened").at(0)["activated"][1]["file"],
            "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.t1");
  EXPECT_THAT(Events(again, "saved").at(0)["slug"], IsEmpty());
  // Another library is read at once, even if the old agent has not ended yet.
  const HostResult other = RunScript("open " + kPoster + "\n", "otf");
  EXPECT_THAT(Events(other, "opened").at(0)["missing"], ElementsAre("LiberationSerif-Bold"));
}

TEST_F(Life, StateFolderServesOneHost) {
  HostProcess first(Arguments({"--interactive"}));
  first.Send("open " + kPoster);
  first.NextEvent("opened");
  const HostResult second = RunHost(Arguments({kBrochure}, "t1"));
  EXPECT_EQ(second.status, 1);
  EXPECT_THAT(Errors(second), ElementsAre(HasSubstr("in use by another host")));
  EXPECT_EQ(first.Finish().status, 0);
}

TEST_F(Life, UserChoosesAmongFilesInTheBox) {
  const HostResult result = RunScript(
      "set PickBestMatch 0\n"
      "answer button 1 font NimbusSans-Bold 2 font NimbusSans-Regular 1\n"
      "open " +
      kPoster + "\n");
  const Json activated = Events(result, "opened").at(0)["activated"];
  ASSERT_THAT(activated, SizeIs(3));
  EXPECT_THAT(activated[1]["file"].get<std::string>(), testing::EndsWith("NimbusSans-Regular.otf"));
  EXPECT_THAT(activated[2]["file"].get<std::string>(), testing::EndsWith("NimbusSans-Bold.t1"));
  EXPECT_THAT(result.errors, HasSubstr("2  URW, version 1.00, Postscript, Font Library, NimbusSans-Bold.t1"));
}

TEST_F(Life, CommandBoxRunsTheChosenCommand) {
  const HostResult result = RunScript("open " + kPoster + "\nanswer button 2\nanswer button 1\ndo-it\n");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("A set belongs to one workgroup or library."));
}

TEST_F(Life, FontsAreCollectedWhereTheUserSays) {
  // As a user types it: relative to the current folder.
  const std::string relative = std::filesystem::relative(folder_ / "collected").string();
  const std::string impossible = folder_.Write("file", "") + "/below";
  std::string script = "open " + kPoster + "\n";
  for (const std::string& folder : {relative, impossible}) {
    script += "answer button 3\nanswer button 1 text '" + folder + "'\ndo-it\n";
  }
  const HostResult result = RunScript(script);
  std::set<std::string> names = folder_.Names("collected");
  EXPECT_THAT(names, Contains("LiberationSerif-Bold.ttf"));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(Errors(result), ElementsAre(HasSubstr(impossible + ": the fonts could not be collected here")));
}

TEST_F(Life, NewDocumentIsEditedSavedAndFoundAgain) {
  const std::string file = folder_ / "new.psd";
  const HostResult result = RunScript("make\nedit C059-Bold\nsave-as " + file + "\nclose\nopen " + file + "\n");
  EXPECT_EQ(result.status, 0) << result.output << result.errors;
  const Json opened = Events(result, "opened").at(0);
  EXPECT_THAT(opened["named"], ElementsAre("C059-Bold"));
  EXPECT_THAT(opened["activated"], SizeIs(1));
}

TEST_F(Life, ReadersListTheFontsThatThePluginDoesNotRead) {
  const std::string file = folder_.Write("a.eps", "%!PS-Adobe-3.0 EPSF-3.0\n%%DocumentFonts: A-Bold\n%%EndComments\n");
  const HostResult result =
      RunScript("open " + file + "\nopen " SOURCE_DIR "/samples/leaflet.pdf\nopen " + kNoText + "\n");
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::vector<Json> opened = Events(result, "opened");
  ASSERT_THAT(opened, SizeIs(3));
  EXPECT_THAT(opened[0]["readers"], ElementsAre("A-Bold"));
  EXPECT_THAT(opened[1]["readers"], ElementsAre("NimbusSans-Bold", "NimbusRoman-Italic"));
  EXPECT_FALSE(opened[2].contains("readers"));
}

TEST_F(Life, ShowsGoToStandardErrorBesideJson) {
  const HostResult result =
      RunScript("open " + kPoster + "\nshow documents\nshow fonts\nshow windows\nshow trace 5\nshow preferences\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.Events(), SizeIs(2));
  EXPECT_THAT(result.errors, HasSubstr("* " + kPoster));
  for (const char* shown : {"3 of them by the agent", "no windows", "PickBestMatch = 1"}) {
    EXPECT_THAT(result.errors, HasSubstr(shown));
  }
}

TEST_F(Desktop, MakesFontsActiveInTheUsersOwnFolder) {
  HostProcess host(Arguments({"--desktop", "--interactive"}));
  host.Send("open " + kPoster);
  const Json opened = host.NextEvent("opened");
  ASSERT_THAT(opened["activated"], SizeIs(3));
  // The report names the font's own file, for each kind of link.
  EXPECT_EQ(opened["activated"][0]["file"], "/usr/share/fonts/truetype/liberation2/LiberationSerif-Bold.ttf");
  EXPECT_EQ(CountLinks(), 3u);
  EXPECT_EQ(host.Finish().status, 0);
  EXPECT_EQ(CountLinks(), 0u);
  EXPECT_THAT(state_.Links(), IsEmpty());
}

// Two agents share the font folder. Neither mistakes the other's links for system fonts or its own links.
TEST_F(Desktop, TwoStateFoldersKeepTheirLinksApart) {
  HostProcess host(Arguments({"--desktop", "--interactive"}));
  host.Send("open " + kPoster);
  ASSERT_THAT(host.NextEvent("opened")["activated"], SizeIs(3));
  {
    HostProcess second(ArgumentsOf(other_, {"--desktop", "--interactive"}));
    second.Send("open " + kPoster);
    second.NextEvent("opened");
    EXPECT_EQ(CountLinks(), 6u);
    EXPECT_EQ(second.Finish().status, 0);
  }
  EXPECT_EQ(CountLinks(), 3u);
  EXPECT_EQ(host.Finish().status, 0);
  EXPECT_EQ(CountLinks(), 0u);
}

TEST_F(Desktop, LinksLeftByAKillGoWhenAnyHostStarts) {
  for (const char* mode : {"--desktop", "--interactive"}) {
    HostProcess host(Arguments({"--desktop", "--interactive"}));
    host.Send("open " + kPoster);
    host.NextEvent("opened");
    ASSERT_TRUE(state_.EndAgent(SIGKILL));
    host.Kill();
    EXPECT_EQ(CountLinks(), 3u);
    EXPECT_EQ(HostProcess(ArgumentsOf(other_, {mode, "--interactive"})).Finish().status, 0);
    EXPECT_EQ(CountLinks(), 0u) << mode;
  }
}

TEST_F(Life, KilledAgentIsStartedAgainAndServesTheSameHost) {
  HostProcess host(Arguments({"--interactive"}));
  // The plug-in checks every few seconds whether the agent runs. After the wait the first check is done.
  host.Send("set CloseFontsOnDocClose 1\nopen " + kPoster + "\nwait 0.1\nopen " + kNoText);
  host.NextEvent("opened");
  host.NextEvent("opened");
  ASSERT_TRUE(state_.EndAgent(SIGKILL));
  host.Send("open " + kBrochure);
  EXPECT_THAT(host.NextEvent("error")["message"], HasSubstr("started again"));
  EXPECT_THAT(host.NextEvent("opened")["activated"], SizeIs(3));
  host.Send("close " + kPoster);
  EXPECT_EQ(host.NextEvent("closed")["deactivated"], Json(kPostersFonts));
  host.Send("close");
  EXPECT_THAT(host.NextEvent("closed")["deactivated"], SizeIs(3));
  EXPECT_EQ(host.Finish().status, 1);
  EXPECT_THAT(state_.Links(), IsEmpty());
}

TEST_F(Life, AgentThatCouldNotBeStartedAgainIsTriedAgain) {
  const std::string program = LayOut({}), agent = folder_ / "app/agent/Nexcore", aside = agent + ".aside";
  HostProcess host(Arguments({"--interactive"}), program);
  host.Send("open " + kNoText);
  host.NextEvent("opened");
  std::filesystem::rename(agent, aside);
  ASSERT_TRUE(state_.EndAgent(SIGKILL));
  host.Send("edit");
  EXPECT_THAT(host.NextEvent("error")["message"], HasSubstr("could not be started again"));
  std::filesystem::rename(aside, agent);
  host.Send("open " + kBrochure);
  host.NextEvent("opened");
  const HostResult result = host.Finish();
  EXPECT_THAT(Events(result, "error"), SizeIs(1)) << "told once";
  EXPECT_THAT(result.errors, HasSubstr("the agent was started again"));
}

// The slug is written in place, and a file with two names is overwritten.
TEST_F(Life, SaveKilledInTheMiddleIsFinishedAtTheNextOpen) {
  const struct {
    const char* name;
    long systemCall;
  } rows[] = {{"slug.psd", SYS_pwrite64}, {"linked.psd", SYS_ftruncate}};
  for (const auto& row : rows) {
    const std::string document = CopyOf(kPoster, row.name);
    if (row.systemCall == SYS_ftruncate) std::filesystem::create_hard_link(document, folder_ / "second name");
    HostProcess host(Arguments({"--interactive"}));
    host.Send("open " + document);
    host.NextEvent("opened");
    host.KillAt(row.systemCall, [&] { host.Send("edit C059-Bold\nsave"); });
    const HostResult next = RunScript("open " + document + "\n");
    EXPECT_THAT(Errors(next), ElementsAre(document + ": a save that was interrupted is finished"));
    EXPECT_THAT(folder_.Names(), Each(Not(StartsWith("."))));
    EXPECT_THAT(Events(next, "opened").at(0)["named"].get<std::vector<std::string>>(), Contains("C059-Bold"));
    if (row.systemCall != SYS_pwrite64) continue;
    EXPECT_THAT(OutputOf("exiftool -a -G1 -XMP:all '" + document + "'"), HasSubstr("LiberationSerif-Bold.ttf"));
  }
}

TEST_F(Life, KilledHostAndAgentLeaveNothingAfterTheNextStart) {
  HostProcess host(Arguments({"--interactive"}));
  host.Send("open " + kPoster);
  host.NextEvent("opened");
  ASSERT_TRUE(state_.EndAgent(SIGKILL));
  host.Kill();
  EXPECT_THAT(state_.Links(), SizeIs(3));
  const HostResult next = RunHost(Arguments({kNoText}));
  EXPECT_EQ(next.status, 0);
  EXPECT_THAT(next.errors, HasSubstr("ended without quitting"));
  EXPECT_THAT(state_.Links(), IsEmpty());
}

TEST_F(Life, KilledHostsFontsAreGivenBackByTheAgent) {
  HostProcess host(Arguments({"--interactive"}));
  host.Send("open " + kPoster);
  host.NextEvent("opened");
  host.Kill();
  state_.AwaitAgentsEnd();
  EXPECT_THAT(state_.Links(), IsEmpty());
}

}  // namespace road
