// Web fonts: packed files are unpacked into a folder of their own, and are fonts like others while they are enabled.
#include "agent/webfonts/WebFonts.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "agent/AgentRing.h"
#include "agent/fonts/FontFile.h"
#include "agent/unpacking/FontUnpacker.h"
#include "platform/Fonts.h"
#include "support/DebianFonts.h"
#include "support/PackedFonts.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using debian_fonts::Bytes;
using test_support::Woff2Of;
using test_support::WoffOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

TEST(FontUnpacker, GivesBackTheFontThatWasPacked) {
  const agent::FontUnpacker unpacker;
  const agent::FontFileReader reader;
  for (const std::string& file :
       {debian_fonts::kLiberation + "LiberationMono-Bold.ttf", debian_fonts::kOpenType + "NimbusSans-Bold.otf"}) {
    const std::string plain = Bytes(file);
    const agent::FontFace face = reader.Parse(plain, "").faces.at(0);
    for (const std::string& packed : {WoffOf(plain), Woff2Of(plain)}) {
      SCOPED_TRACE(file + " " + packed.substr(0, 4));
      const std::vector<std::string> fonts = unpacker.Unpack(packed);
      ASSERT_THAT(fonts, SizeIs(1));
      const agent::FontFileContent unpacked = reader.Parse(fonts[0], "");
      ASSERT_EQ(unpacked.problem, "");
      EXPECT_EQ(unpacked.faces[0].postScriptName, face.postScriptName);
      EXPECT_EQ(unpacked.faces[0].kind, face.kind);
      // WOFF2 writes the same TrueType outlines in other bytes.
      const bool isRewritten = packed.starts_with("wOF2") && file.ends_with(".ttf");
      EXPECT_EQ(unpacked.faces[0].glyphsureChecksum == face.glyphsureChecksum, !isRewritten);
      EXPECT_EQ(unpacked.faces[0].kerningChecksum, face.kerningChecksum);
      for (const size_t size : {size_t{4}, packed.size() / 3, packed.size() - 300}) {
        EXPECT_THROW(unpacker.Unpack(packed.substr(0, size)), agent::UnpackError) << size;
      }
    }
    EXPECT_THROW(unpacker.Unpack(plain), agent::UnpackError);
  }
}

class WebFonts : public AgentRing {
 protected:
  WebFonts() {
    const std::string plain = Bytes(debian_fonts::kLiberation + "LiberationMono-Bold.ttf");
    packed_.Write("a/Mono.woff2", Woff2Of(plain));
    packed_.Write("b/Sans.woff", WoffOf(Bytes(debian_fonts::kOpenType + "NimbusSans-Bold.otf")));
    packed_.Write("broken.woff2", Woff2Of(plain).substr(0, 5000));
    packed_.Write("nonsense.woff", "not packed");
    fs::copy_file(debian_fonts::kLiberation + "LiberationSerif-Bold.ttf", packed_ / "Serif.ttf");
  }
  std::vector<std::string> Unpacked() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(state_ / "agent/webfonts")) {
      const std::string name = entry.path().filename();
      names.push_back(name.substr(0, name.find('-')) + name.substr(name.rfind('-')));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  void AwaitRest(RawClient& client) const {
    while (client.Ask("GetStatus")["result"]["isScanning"]) {
    }
  }
  size_t CountWebFonts() const {
    const platform::Array fonts = platform::Array::Create();
    EXPECT_EQ(vpi_.GetGoogleFonts(Handle(), fonts.Ref()), 0u);
    for (size_t i = 0; i < fonts.Count(); ++i) {
      EXPECT_EQ(platform::Dictionary(fonts.At(i)).GetInteger("fontLocation"), 10);
    }
    return fonts.Count();
  }
  bool AreEnabled() const {
    int32_t enabled = 99;
    EXPECT_EQ(vpi_.GetIsGoogleWebFontsEnabled(Handle(), &enabled), 0u);
    return enabled == 1;
  }

  test_support::TempFolder packed_;
};

TEST_F(WebFonts, AreOffUntilEnabledAndThenFontsLikeOthers) {
  Launch();
  EXPECT_EQ(vpi_.RegisterForNotifications(Handle(), &Recorder::Callback), 0u);
  EXPECT_EQ(vpi_.CanAccessGoogleFonts(Handle()), 0);
  EXPECT_EQ(vpi_.SetGoogleWebFontsEnabled(Handle(), 1), uint32_t{agent_protocol::kNotFound}) << "there is no folder";
  RawClient client(state_ / "run");
  EXPECT_EQ(client.Ask("SetWebFontsFolder", {{"folder", packed_.Path()}})["code"], 0);
  EXPECT_EQ(vpi_.CanAccessGoogleFonts(Handle()), 1);
  AwaitRest(client);
  EXPECT_FALSE(AreEnabled());
  EXPECT_EQ(CountWebFonts(), 0u);

  EXPECT_EQ(vpi_.SetGoogleWebFontsEnabled(Handle(), 1), 0u);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kGoogleWebFontsEnabled));
  AwaitRest(client);
  EXPECT_TRUE(AreEnabled());
  EXPECT_EQ(CountWebFonts(), 3u);
  EXPECT_THAT(Unpacked(), ElementsAre("Mono-0.ttf", "Sans-0.otf"));
  const Json workgroups = client.Ask("GetAllWorkgroupsForUser", {{"includeSpecial", true}})["result"]["workgroups"];
  EXPECT_EQ(workgroups[1]["WorkgroupType"], "8");
  const Json problems = client.Ask("GetWebFontsStatus")["result"]["problems"];
  ASSERT_THAT(problems, SizeIs(2));
  EXPECT_THAT(problems[0]["path"].get<std::string>(), HasSubstr("broken.woff2"));
  EXPECT_THAT(problems[1]["message"].get<std::string>(), HasSubstr("no packed font file"));

  const uint32_t mono = FontNamed("LiberationMono-Bold");
  EXPECT_EQ(Activate({mono}), 1u);
  EXPECT_TRUE(platform::ActivePostScriptNames().contains("LiberationMono-Bold"));
  // Somebody deletes the unpacked files while one is active.
  fs::remove_all(state_ / "agent/webfonts");
  client.Ask("Rescan");
  AwaitRest(client);
  EXPECT_EQ(FontNamed("LiberationMono-Bold"), mono);
  EXPECT_TRUE(platform::ActivePostScriptNames().contains("LiberationMono-Bold"));
  // A packed file goes.
  fs::remove(packed_ / "b/Sans.woff");
  client.Ask("Rescan");
  AwaitRest(client);
  EXPECT_THAT(Unpacked(), ElementsAre("Mono-0.ttf"));

  EXPECT_EQ(vpi_.SetGoogleWebFontsEnabled(Handle(), 0), 0u);
  AwaitRest(client);
  EXPECT_EQ(CountWebFonts(), 0u);
  EXPECT_FALSE(platform::ActivePostScriptNames().contains("LiberationMono-Bold"));
}

TEST_F(WebFonts, UnpackedFilesHaveALimitTogether) {
  const uint64_t one = fs::file_size(debian_fonts::kLiberation + "LiberationMono-Bold.ttf");
  platform::RunLoop loop;
  bool isFinished = false, hasChanged = false;
  std::vector<std::string> reports;
  agent::WebFontEvents events;
  events.progress = [](const agent::ScanProgress&) {};
  events.finished = [&](bool changed, bool) {
    hasChanged = changed;
    isFinished = true;
  };
  events.report = [&](const std::string& line) { reports.push_back(line); };
  agent::WebFonts web(state_ / "agent/webfonts", APP_DIR "/agent/font-unpacker", one + 1000, loop, events);
  web.SetFolder(packed_.Path());
  for (const bool first : {true, false}) {
    isFinished = false;
    web.Update();
    ASSERT_TRUE(loop.RunUntil([&] { return isFinished; }, kMostMilliseconds / 1000.0));
    EXPECT_EQ(hasChanged, first);
    EXPECT_THAT(Unpacked(), ElementsAre("Mono-0.ttf"));
    EXPECT_THAT(web.Problems(), SizeIs(3));
  }
  EXPECT_THAT(reports, testing::Contains(HasSubstr("would need more than")));
  EXPECT_THAT(reports, SizeIs(3)) << "each problem once";
}

}  // namespace
