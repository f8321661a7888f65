// Drawn names of fonts: what is drawn, how it is kept, and what a broken font or worker can do.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "agent/AgentRing.h"
#include "agent/previews/PreviewCache.h"
#include "agent/previews/PreviewWorker.h"
#include "agent/previews/Previews.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Base64.h"
#include "platform/Clock.h"
#include "support/DebianFonts.h"

namespace {

using namespace agent_ring;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::Ge;
using testing::HasSubstr;
using testing::Le;

struct Extent {
  uint32_t width = 0, height = 0;
};

// From the header of a PNG file; nothing if it is none.
Extent ExtentOf(const std::string& png) {
  const bool isPNG = png.size() > 24 && png.starts_with("\x89PNG");
  return isPNG ? Extent{debian_fonts::Long(png, 16), debian_fonts::Long(png, 20)} : Extent{};
}

constexpr agent::PreviewSize kSize = {14, 400, 30};

class Preview : public AgentRing {
 protected:
  // The pictures of the fonts, as they come over the socket.
  Json Ask(RawClient& client, const std::vector<uint32_t>& urgent, const std::vector<uint32_t>& others) const {
    client.notifications.clear();
    const Json reply = client.Ask("RenderFontNamePreviewPNGs", {{"highPriorityFontIDs", urgent},
                                                                {"fontIDs", others},
                                                                {"textSize", kSize.textSize},
                                                                {"width", kSize.width},
                                                                {"height", kSize.height}});
    EXPECT_EQ(reply["code"], 0);
    Json pictures = Json::object();
    while (pictures.size() < urgent.size() + others.size()) {
      const Json event = client.Next();
      if (event.is_null()) break;
      if (event["notify"] == PluginInterface::kPreviewPNGsRendered) pictures.update(event["payload"]);
    }
    return pictures;
  }
};

TEST_F(Preview, NamesAreDrawnInTwoSizesAndKept) {
  FillLibrary();
  Launch();
  const uint32_t font = FontNamed("LiberationSerif-Bold");
  RawClient client(state_ / "run");
  client.Hello();
  const Json first = Ask(client, {font}, {})[std::to_string(font)];
  const std::string png = platform::DecodeBase64(first["pngBytes"].get<std::string>()).value();
  EXPECT_EQ(png, debian_fonts::Bytes(first["pngFilename"]));
  const Extent one = ExtentOf(png), two = ExtentOf(debian_fonts::Bytes(first["2xPNGFilename"]));
  EXPECT_EQ(one.height, kSize.height);
  EXPECT_EQ(two.height, 2 * kSize.height);
  EXPECT_THAT(one.width, AllOf(Ge(kSize.textSize), Le(kSize.width)));
  EXPECT_THAT(two.width, AllOf(Ge(2 * one.width - 8), Le(2 * one.width + 8)));
  // The second time from the folder, and again if somebody deletes that.
  const auto inode = [&first] {
    struct stat info {};
    EXPECT_EQ(stat(first["pngFilename"].get<std::string>().c_str(), &info), 0);
    return info.st_ino;
  };
  const ino_t drawn = inode();
  EXPECT_EQ(Ask(client, {}, {font})[std::to_string(font)], first);
  EXPECT_EQ(inode(), drawn);
  fs::remove_all(state_ / "agent/previews");
  EXPECT_EQ(Ask(client, {}, {font})[std::to_string(font)], first);
}

TEST_F(Preview, FontsThatCannotShowTheirNameGetAMarkedOne) {
  // Symbols only; a file that is broken after the scan; a whole one.
  fs::copy_file(debian_fonts::kOpenType + "D050000L.otf", fonts_ / "symbols.otf");
  fs::copy_file(debian_fonts::kDejaVu + "DejaVuSans.ttf", fonts_ / "broken.ttf");
  fs::copy_file(debian_fonts::kOpenType + "NimbusSans-Bold.otf", fonts_ / "whole.otf");
  Launch();
  const uint32_t symbols = FontNamed("D050000L"), broken = FontNamed("DejaVuSans"),
                 whole = FontNamed("NimbusSans-Bold");
  // The same inode and time, so that no scan replaces the record.
  const fs::file_time_type time = fs::last_write_time(fonts_ / "broken.ttf");
  std::string bytes = debian_fonts::Bytes(fonts_ / "broken.ttf");
  bytes.replace(12, 64, 64, '\xFF');
  {
    std::ofstream file(fonts_ / "broken.ttf", std::ios::in | std::ios::out | std::ios::binary);
    file << bytes;
  }
  fs::last_write_time(fonts_ / "broken.ttf", time);
  RawClient client(state_ / "run");
  client.Hello();
  const Json pictures = Ask(client, {whole}, {symbols, broken});
  for (const uint32_t font : {symbols, broken, whole}) {
    const Json& picture = pictures[std::to_string(font)];
    EXPECT_GT(ExtentOf(platform::DecodeBase64(picture.value("pngBytes", "")).value_or("")).width, kSize.textSize)
        << font;
  }
}

TEST_F(Preview, WhatAPersonSeesIsDrawnFirst) {
  FillLibrary();
  platform::RunLoop loop;
  std::vector<uint32_t> order;
  agent::PreviewEvents events;
  events.rendered = [&](uint32_t, const std::vector<agent::Preview>& previews) {
    for (const agent::Preview& preview : previews) order.push_back(preview.fontID);
  };
  events.canTake = [](uint32_t) { return true; };
  events.report = [](const std::string& line) { ADD_FAILURE() << line; };
  agent::Previews previews(state_ / "previews", APP_DIR "/agent/preview-worker", loop, std::move(events));
  const auto font = [&](uint32_t id) {
    return agent::PreviewFont{id, fonts_ / "LiberationSerif-Bold.ttf", 0, id, "A"};
  };
  previews.Render(1, {font(1), font(2)}, {14, 400, 30}, false);
  previews.Render(1, {font(3), font(4)}, {14, 400, 30}, true);
  EXPECT_TRUE(loop.RunUntil([&] { return order.size() == 4; }, kMostMilliseconds / 1000.0));
  EXPECT_THAT(order, testing::ElementsAre(3, 4, 1, 2));
}

TEST_F(Preview, WorkerThatEndsOrHangsCostsOneAnswer) {
  platform::RunLoop loop;
  state_.Write("hangs", "#!/bin/sh\nexec tail -f /dev/null\n");
  state_.Write("ends", "#!/bin/sh\nexit 7\n");
  state_.Write("nonsense", "#!/bin/sh\nprintf '\\000\\000\\000\\001x' >&0\nexec tail -f /dev/null\n");
  struct Row {
    const char* program;
    const char* problem;
  };
  for (const Row& row : {Row{"hangs", "too long"}, Row{"ends", "status 7"}, Row{"nonsense", "nonsense"},
                         Row{"absent", "can't be started"}}) {
    SCOPED_TRACE(row.program);
    if (fs::exists(state_ / row.program)) fs::permissions(state_ / row.program, fs::perms::owner_all);
    const bool hangs = row.program == std::string("hangs");
    if (hangs) platform::Clock::SetDriven(1000);
    agent::PreviewWorker worker(state_ / row.program, loop);
    for (int i = 0; i < 2; ++i) {
      std::string problem;
      worker.Render({}, "/a/font.ttf", [&](const agent::RenderedName& name) {
        EXPECT_TRUE(name.hasEnded);
        problem = name.problem;
      });
      if (hangs) loop.RunFor(60);
      EXPECT_TRUE(loop.RunUntil([&] { return !problem.empty(); }, kMostMilliseconds / 1000.0));
      EXPECT_THAT(problem, HasSubstr(row.problem));
      EXPECT_FALSE(worker.IsBusy());
    }
    platform::Clock::UseSystemTime();
  }
}

TEST_F(Preview, CacheKeepsWhatWasUsedLast) {
  const std::string png = "PNG" + std::string("IEND\xAE\x42\x60\x82");
  agent::PreviewFiles files;
  {
    agent::PreviewCache cache(state_ / "previews", 10 * png.size());
    for (const char* key : {"a", "b", "c", "d", "e"}) EXPECT_FALSE(cache.Put(key, png, png, files));
    EXPECT_TRUE(cache.Find("a"));
    EXPECT_FALSE(cache.Put("f", png, png, files));
    EXPECT_FALSE(cache.Find("b"));
    EXPECT_TRUE(cache.Find("a"));
  }
  // Half pairs and what a killed agent was writing are removed; a cut file is drawn again.
  state_.Write("previews/half@2x.png", png);
  state_.Write("previews/.x.png.new", png);
  state_.Write("previews/c.png", "");
  agent::PreviewCache again(state_ / "previews", 10 * png.size());
  EXPECT_TRUE(again.Find("f"));
  EXPECT_FALSE(again.Find("c"));
  EXPECT_FALSE(fs::exists(state_ / "previews/half@2x.png"));
  EXPECT_FALSE(fs::exists(state_ / "previews/.x.png.new"));
  fs::remove_all(state_ / "previews");
  EXPECT_FALSE(again.Find("f"));
}

}  // namespace
