// docfonts --resolve, which asks the agent that serves the host.
#include <gmock/gmock.h>

#include "road/RoadFixture.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

namespace road {

namespace {

const std::string kDocfonts = APP_DIR "/docfonts/docfonts";
const std::string kSlides = SOURCE_DIR "/tests/docfonts/samples/slide.odp";

class Resolve : public RoadTest {
 protected:
  HostResult RunDocfonts(const std::vector<std::string>& documents, const std::string& state) const {
    std::vector<std::string> arguments = {"--resolve", "--json", "--state", state};
    arguments.insert(arguments.end(), documents.begin(), documents.end());
    return RunHost(arguments, kDocfonts);
  }
  static Json FontNamed(const HostResult& result, const std::string& name) {
    for (const Json& document : result.Events()) {
      for (const Json& font : document["fonts"]) {
        if (font["name"] == name) return font;
      }
    }
    return {};
  }
};

}  // namespace

TEST_F(Resolve, NamesTheFileThatWouldBeChosenWhetherActiveOrNot) {
  HostProcess host(Arguments({"--interactive"}));
  host.Send("set CloseFontsOnDocClose 1\nopen " + kPoster);
  host.NextEvent("opened");
  // The processes that read them start while the agent is connected.
  const HostResult active = RunDocfonts({kPoster, kBrochure, kPoster, kSlides}, state_.Path());
  EXPECT_EQ(active.status, 0) << active.errors;
  EXPECT_THAT(active.Events(), SizeIs(4));
  EXPECT_THAT(FontNamed(active, "Nimbus Roman Italic")["resolved"], EndsWith("/NimbusRoman-Italic.otf"))
      << "a document that names a family and a style";
  EXPECT_EQ(FontNamed(active, "NimbusSans-Bold")["active"], true);
  EXPECT_THAT(FontNamed(active, "NimbusSans-Bold")["resolved"], EndsWith("/NimbusSans-Bold.otf"));
  host.Send("close");
  host.NextEvent("closed");
  const HostResult inactive = RunDocfonts({kPoster}, state_.Path());
  EXPECT_EQ(FontNamed(inactive, "NimbusSans-Bold")["active"], false);
  EXPECT_THAT(FontNamed(inactive, "NimbusSans-Bold")["resolved"], EndsWith("/NimbusSans-Bold.otf"));
  EXPECT_EQ(state_.Links(), std::vector<std::string>()) << "it activates nothing";
  EXPECT_EQ(host.Finish().status, 0);
}

TEST_F(Resolve, SaysThatNoAgentRunsAndNoneCanBeStarted) {
  const HostResult result = RunDocfonts({kPoster}, folder_ / "none");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, HasSubstr("docfonts: --resolve: no font manager is running, and none can be started"));
}

}  // namespace road
