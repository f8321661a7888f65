#include "road/RoadFixture.h"

#include <filesystem>

namespace road {

namespace fs = std::filesystem;

std::string RoadTest::LayOut(const std::vector<std::string>& agentEntries) const {
  const fs::path app = folder_ / "app", real = APP_DIR;
  fs::create_directories(app / "host");
  // A copy, since a program finds its neighbours by where it really lies.
  fs::copy_file(real / "host/host", app / "host/host");
  fs::create_symlink(real / "host/Plug-ins", app / "host/Plug-ins");
  fs::create_symlink(real / "host/Frameworks", app / "host/Frameworks");
  if (!agentEntries.empty()) fs::create_directories(app / "agent");
  for (const std::string& entry : agentEntries) {
    if (fs::is_directory(real / "agent" / entry)) {
      fs::create_symlink(real / "agent" / entry, app / "agent" / entry);
    } else {
      fs::copy_file(real / "agent" / entry, app / "agent" / entry);
    }
  }
  return app / "host/host";
}

std::vector<Json> Events(const HostResult& result, const std::string& kind) {
  std::vector<Json> events;
  for (const Json& event : result.Events()) {
    if (event["event"] == kind) events.push_back(event);
  }
  return events;
}

std::vector<std::string> Errors(const HostResult& result) {
  std::vector<std::string> errors;
  for (const Json& event : Events(result, "error")) {
    errors.push_back(event["file"].get<std::string>() + ": " + event["message"].get<std::string>());
  }
  return errors;
}

}  // namespace road
