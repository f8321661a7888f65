// The exported functions with the real agent: their results and errors.
#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <numeric>
#include <thread>

#include "agent/AgentRing.h"
#include "platform/Fonts.h"
#include "support/DebianFonts.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using platform::ValueRef;
using testing::ElementsAre;

constexpr uint32_t kGone = PluginInterface::kAgentShutdownCode;
constexpr uint32_t kUnavailable = PluginInterface::kServiceUnavailableCode;
constexpr uint32_t kAll = 0;

class LibraryCalls : public AgentRing {
 protected:
  LibraryCalls() {
    FillLibrary();
    Launch();
  }
};

TEST_F(LibraryCalls, ConnectingTellsWhoIsThere) {
  int32_t answer = 99;
  EXPECT_EQ(vpi_.InitAppInstance(Handle(), 3, 21), 0u);
  EXPECT_EQ(vpi_.GetIsCoreAgentProcessRunning(Handle(), &answer), 0u);
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(vpi_.InitThreadInstance(Handle()), 0u);
  EXPECT_EQ(vpi_.GetAreSchemaVersionsInSync(Handle(), &answer), 0u);
  EXPECT_EQ(answer, 1);
  char path[1024] = {};
  EXPECT_EQ(vpi_.GetFontVaultPath(Handle(), sizeof path, path), 0u);
  EXPECT_EQ(path, state_ / "agent");
  EXPECT_NE(vpi_.GetFontVaultPath(Handle(), 4, path), 0u);
  EXPECT_STREQ(path, "");
}

TEST_F(LibraryCalls, ThisEditionServesOneUserWithoutAServer) {
  int32_t answer = 99;
  EXPECT_EQ(vpi_.GetIsLoggedIn(Handle(), &answer), 0u);
  EXPECT_EQ(answer, 1);
  EXPECT_NE(vpi_.GetIsLoggedIn(Handle(), nullptr), 0u);
}

TEST_F(LibraryCalls, LookUpsKeepToNamesWorkgroupsAndCapacity) {
  const struct {
    const char* name;
    std::vector<uint32_t> workgroups;
    uint32_t capacity;
    size_t postScript;
    size_t family;
  } rows[] = {
      {"NimbusSans-Bold", {0}, 1024, 2, 0},     {"NimbusSans-Bold", {1}, 1024, 2, 0},
      {"NimbusSans-Bold", {2}, 1024, 0, 0},     {"NimbusSans-Bold", {2, 1}, 1, 1, 0},
      {"NimbusSans-Bold", {0}, 0, 0, 0},        {"nimbussans-bold", {0}, 1024, 0, 0},
      {"Nimbus Sans", {0}, 1024, 0, 3},         {"nimbus sans", {0}, 2, 0, 2},
      {"'; DROP TABLE fonts", {0}, 1024, 0, 0}, {"\xFF\xFE", {0}, 1024, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<uint32_t> ids(row.capacity + 1, 4711);
    const auto groups = static_cast<uint32_t>(row.workgroups.size());
    uint32_t count = 99;
    EXPECT_EQ(vpi_.GetFontsByPostscriptName(Handle(), row.name, row.workgroups.data(), groups, ids.data(), row.capacity,
                                            &count),
              0u);
    EXPECT_EQ(count, row.postScript);
    EXPECT_EQ(
        vpi_.GetFontsByFamilyName(Handle(), row.name, row.workgroups.data(), groups, ids.data(), row.capacity, &count),
        0u);
    EXPECT_EQ(count, row.family);
    EXPECT_EQ(ids[row.capacity], 4711u);  // nothing beyond the capacity
  }
}

TEST_F(LibraryCalls, ARecordSpeaksTheVocabularyOfRecords) {
  const uint32_t id = FontNamed("LiberationSerif-Bold");
  Dictionary request = Dictionary::Create();
  request.Set("DatabaseID", std::to_string(id));
  request.Set("WorkgroupID", "-2");
  PluginInterface::FontRecordFields fields;
  ValueRef out = nullptr;
  ASSERT_EQ(vpi_.GetFontInfoByID(Handle(), &kAll, 1, request.Ref(), &fields, &out), 0u);
  const Dictionary record(Value::Adopt(out));
  EXPECT_EQ(fields.nDatabaseID, id);
  const std::pair<const char*, std::string> expected[] = {
      {"PostScriptName", "LiberationSerif-Bold"},
      {"FontKind", "OpenType - TT"},
      {"Family", "Liberation Serif"},
      {"Path", fonts_ / "LiberationSerif-Bold.ttf"},
      {"OutlineFileName", "LiberationSerif-Bold.ttf"},
      {"OutlineFileSize", std::to_string(fs::file_size(fonts_ / "LiberationSerif-Bold.ttf"))},
      {"DatabaseID", std::to_string(id)},
      {"ActivationStatus", "0"},
      {"IsSystem", "0"},
      {"IsLocal", "1"},
      {"WorkgroupID", "1"},
      {"WorkgroupType", "3"}};
  for (const auto& [key, value] : expected) EXPECT_EQ(record.GetString(key).View(), value) << key;
  // Each column with a name is a key of this record.
  const decltype(vpi_.GetFoundryNameColumnID) columns[] = {
      vpi_.GetActivationStateColumnID, vpi_.GetFamilyGroupIDColumnID,   vpi_.GetFamilyGroupNameColumnID,
      vpi_.GetFamilyNameColumnID,      vpi_.GetFileSizeColumnID,        vpi_.GetGlyphsureChecksumColumnID,
      vpi_.GetFontTypeColumnID,        vpi_.GetFontVersionColumnID,     vpi_.GetFoundryNameColumnID,
      vpi_.GetIsFontLocalColumnID,     vpi_.GetKerningChecksumColumnID, vpi_.GetLegacyGlyphsureChecksumColumnID,
      vpi_.GetLocalPathColumnID,       vpi_.GetPostscriptNameColumnID,  vpi_.GetWorkgroupIDColumnID,
      vpi_.GetWorkgroupNameColumnID,   vpi_.GetWorkgroupTypeColumnID};
  for (const auto column : columns) {
    char name[64];
    ASSERT_EQ(column(name, sizeof name), 0u);
    EXPECT_TRUE(record.Contains(name)) << name;
  }
  request.Set("DatabaseID", "4711");
  EXPECT_EQ(vpi_.GetFontInfoByID(Handle(), &kAll, 1, request.Ref(), &fields, &out), 0x07000000u);
  EXPECT_EQ(out, nullptr);
  request.Set("DatabaseID", "12 monkeys");
  EXPECT_EQ(vpi_.GetFontInfoByID(Handle(), &kAll, 1, request.Ref(), &fields, &out), 0x04000000u);

  Array family = Array::Create();
  ASSERT_EQ(vpi_.FindFontsInSameFamilyForActivation(record.Ref(), &kAll, 1, family.Ref()), 0u);
  EXPECT_EQ(family.Count(), 1u);
  EXPECT_EQ(Dictionary(family.At(0)).GetString("DatabaseID").View(), std::to_string(id));
}

TEST_F(LibraryCalls, ActivationIsRealIsToldAndIsGivenBack) {
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  const std::vector<uint32_t> nimbus = FontsNamed("NimbusSans-Bold");
  ASSERT_EQ(nimbus.size(), 2u);
  EXPECT_EQ(Activate({serif, nimbus[0]}), 2u);
  EXPECT_EQ(Activate({nimbus[1], 4711}), 0u);
  const std::array<uint32_t, 2> previewed = {nimbus[1], mono};
  EXPECT_EQ(vpi_.PreviewActivateFonts(Handle(), 2, previewed.data(), 0), 0u) << "one of them is active";
  EXPECT_NE(vpi_.PreviewActivateFonts(Handle(), 1, &nimbus[1], 0), 0u);
  for (const uint32_t id : {serif, nimbus[0], mono}) EXPECT_TRUE(recorder_.Await(PluginInterface::kFontActivated, id));
  for (const char* name : {"LiberationSerif-Bold", "NimbusSans-Bold", "LiberationMono-Bold"}) {
    EXPECT_TRUE(platform::ActivePostScriptNames().contains(name)) << name;
  }
  EXPECT_EQ(StateOf(serif), "1");
  EXPECT_EQ(StateOf(mono), "9");
  const std::array<uint32_t, 4> asked = {serif, 4711, nimbus[1], nimbus[0]};
  std::array<uint32_t, 4> flags{};
  EXPECT_EQ(vpi_.GetFontIsActivated(Handle(), 4, asked.data(), flags.data()), 0u);
  EXPECT_THAT(flags, ElementsAre(1, 0, 0, 1));
  EXPECT_EQ(vpi_.GetClientFontActivationStates(4, asked.data(), flags.data()), 0u);
  EXPECT_THAT(flags, ElementsAre(1, 0, 0, 1));
  EXPECT_EQ(vpi_.GetFontConflicts(Handle(), 4, asked.data(), flags.data()), 0u);
  EXPECT_THAT(flags, ElementsAre(0, 0, nimbus[0], 0));

  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 4, asked.data(), 0), 0u);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kFontDeactivated, nimbus[0]));
  EXPECT_FALSE(platform::ActivePostScriptNames().contains("LiberationSerif-Bold"));
  EXPECT_TRUE(platform::ActivePostScriptNames().contains("LiberationMono-Bold"));

  vpi_.UnregisterForNotifications(Handle(), &Recorder::Callback);
  const size_t count = recorder_.Count();
  EXPECT_EQ(Activate({serif}), 1u);
  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 1, &serif, 0), 0u);
  EXPECT_EQ(recorder_.Count(), count);
}

TEST_F(LibraryCalls, SetsAndCopies) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), regular = FontNamed("NimbusSans-Regular");
  const std::array<uint32_t, 3> fonts = {serif, regular, serif};
  const uint32_t unknown = 4711;
  uint32_t set = 0;
  EXPECT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 1, "Bob's & Co", 0, 0, 1, fonts.data()), 0u);
  EXPECT_NE(set, 0u);
  EXPECT_EQ(vpi_.AddFontsToSets(Handle(), 1, &set, 3, fonts.data()), 0u);
  EXPECT_NE(vpi_.AddFontsToSets(Handle(), 1, &unknown, 1, fonts.data()), 0u);
  std::vector<uint32_t> many(257);
  std::iota(many.begin(), many.end(), 1u);
  EXPECT_EQ(vpi_.AddFontsToSets(Handle(), 257, many.data(), 256, many.data()), 0x04000000u)
      << "more pairs than one call adds";
  EXPECT_NE(vpi_.CreateTopLevelSet(Handle(), &set, 1, "", 0, 0, 1, fonts.data()), 0u);
  EXPECT_NE(vpi_.CreateTopLevelSet(Handle(), &set, 1, "X", 0, 0, 1, &unknown), 0u);
  const Json sets = RawClient(state_ / "run").Ask("GetSets")["result"]["sets"];
  EXPECT_EQ(sets,
            Json::parse(R"([{"setID":)" + std::to_string(set) + R"(,"name":"Bob's & Co","workgroupID":1,"fontIDs":[)" +
                        std::to_string(serif) + "," + std::to_string(regular) + "]}]"));
  int32_t can = 99;
  EXPECT_EQ(vpi_.CanExportFonts(Handle(), 3, fonts.data(), &can), 0u);
  EXPECT_EQ(can, 1);
  const std::string folder = state_ / "copies/below";
  state_.Write("copies/below/NimbusSans-Regular.otf", "somebody else's");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(vpi_.ExportFonts(Handle(), 3, fonts.data(), folder.c_str(), 0, 0), 0u);
  using debian_fonts::Bytes;
  EXPECT_EQ(Bytes(folder + "/LiberationSerif-Bold.ttf"), Bytes(fonts_ / "LiberationSerif-Bold.ttf"));
  EXPECT_EQ(Bytes(folder + "/NimbusSans-Regular 2.otf"), Bytes(fonts_ / "NimbusSans-Regular.otf"));
  EXPECT_EQ(Bytes(folder + "/NimbusSans-Regular.otf"), "somebody else's");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 3);
  EXPECT_NE(vpi_.ExportFonts(Handle(), 1, &unknown, folder.c_str(), 0, 0), 0u);
  EXPECT_NE(vpi_.ExportFonts(Handle(), 1, fonts.data(), (fonts_ / "broken.otf").c_str(), 0, 0), 0u);
}

TEST_F(LibraryCalls, ThreadsShareAConnection) {
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  const char* const names[] = {"LiberationSerif-Bold", "LiberationMono-Bold", "NimbusSans-Regular",
                               "NimbusSans-Regular"};
  std::vector<std::thread> threads;
  std::array<int, 4> wrong{};
  for (size_t i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 20; ++round) {
        const uint32_t id = FontNamed(names[i]);
        if (i == 0) wrong[i] += Activate({id}) != 1;
        if (i == 0) wrong[i] += vpi_.DeactivateFonts(Handle(), 1, &id, 0) != 0;
        wrong[i] += StateOf(id).empty();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(wrong, testing::Each(0));
}

TEST_F(AgentRing, WithoutAnAgentEveryQuestionIsAnsweredAtOnceWithACodeThatSaysSo) {
  int32_t answer = 99;
  EXPECT_EQ(vpi_.InitAppInstance(Handle(), 3, 21), 0u);
  EXPECT_EQ(vpi_.GetIsCoreAgentProcessRunning(Handle(), &answer), 0u);
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(vpi_.InitThreadInstance(Handle()), 0x02002005u);
  answer = 99;
  EXPECT_EQ(vpi_.GetIsStandaloneMode(Handle(), &answer), kUnavailable);
  EXPECT_EQ(vpi_.GetAreSchemaVersionsInSync(Handle(), &answer), kUnavailable);
  EXPECT_EQ(answer, 99);  // the caller's default is kept
  uint32_t id = 1, flag = 99, count = 99;
  EXPECT_EQ(vpi_.GetFontsByPostscriptName(Handle(), "X", &kAll, 1, &id, 1, &count), kUnavailable);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(vpi_.GetClientFontActivationStates(1, &id, &flag), kUnavailable);
  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 1, &id, 0), kUnavailable);
  EXPECT_EQ(vpi_.GetIsOnline(0, &answer), 0x04000000u);  // never a handle
  EXPECT_EQ(vpi_.GetIsOnline(Handle() + 99, &answer), 0x04000000u);
  const FacadeHandle before = Handle();
  EXPECT_EQ(Handle(), before);
  EXPECT_EQ(vpi_.ResetPluginFacadeInstance(), 0u);
  EXPECT_NE(Handle(), before);
  EXPECT_EQ(vpi_.GetIsOnline(before, &answer), kGone);
}

TEST_F(AgentRing, TheLogAndTheFoldersNeedNoAgent) {
  EXPECT_EQ(vpi_.Log(0, "before its time"), 0x11000000u);
  for (const char* name : {"", ".", "..", "../outside.log", "a/b.log"}) {
    EXPECT_EQ(vpi_.BeginLogging(0, name), 0x04000000u) << name;
  }
  EXPECT_EQ(vpi_.BeginLogging(0, "host.log"), 0u);
  EXPECT_EQ(vpi_.Log(0, "one\n"), 0u);
  EXPECT_EQ(vpi_.BeginLogging(0, "host.log"), 0u);
  EXPECT_EQ(vpi_.Log(0, "two\n"), 0u);
  EXPECT_EQ(debian_fonts::Bytes(state_ / "logs/host.log"), "one\ntwo\n");

  EXPECT_EQ(vpi_.OSDoesDirectoryExist((state_ / "a/b").c_str()), 0);
  EXPECT_EQ(vpi_.OSCreateDirectory((state_ / "a/b").c_str(), 1), 0u);
  EXPECT_EQ(vpi_.OSCreateDirectory((state_ / "a/b").c_str(), 1), 0u);
  EXPECT_EQ(vpi_.OSDoesDirectoryExist((state_ / "a/b").c_str()), 1);
  EXPECT_NE(vpi_.OSCreateDirectory((state_ / "fonts.conf/b").c_str(), 1), 0u);
  EXPECT_EQ(vpi_.IsAllWorkgroups(-2), 1);
  EXPECT_EQ(vpi_.IsAllWorkgroups(1), 0);
}

}  // namespace
