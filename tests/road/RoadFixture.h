// For all tests of the road: a temporary folder with a state folder and a library.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "road/HostProcess.h"
#include "road/Row.h"
#include "support/TempFolder.h"

namespace road {

inline const std::string kPoster = SOURCE_DIR "/samples/poster.psd";
inline const std::string kBrochure = SOURCE_DIR "/samples/brochure.psd";
inline const std::string kNoText = SOURCE_DIR "/samples/no-text.psd";

class RoadTest : public testing::Test {
 protected:
  // Returns "--json --state STATE --library ...", followed by these.
  std::vector<std::string> Arguments(const std::vector<std::string>& more,
                                     const std::string& library = "liberation,urw") const {
    std::vector<std::string> arguments = {"--json", "--state", state_.Path()};
    for (const std::string& folder : LibraryFolders(library)) arguments.insert(arguments.end(), {"--library", folder});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  HostResult RunScript(const std::string& script, const std::string& library = "liberation,urw") const {
    return RunHost(Arguments({"--script", folder_.Write("script", script)}, library));
  }
  // Creates a folder "app" with the host's program and everything that it needs, except these entries of the real
  // folder.
  std::string LayOut(const std::set<std::string>& leftOut) const;

  test_support::TempFolder folder_;
  StateFolder state_{folder_ / "state"};
};

// Returns the value under the key in each event of this kind, or in all events.
std::vector<Json> Events(const HostResult& result, const std::string& kind);
// Returns "file: message" for each error.
std::vector<std::string> Errors(const HostResult& result);

}  // namespace road
