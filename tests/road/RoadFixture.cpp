#include "road/RoadFixture.h"

#include <filesystem>

namespace road {

namespace fs = std::filesystem;

std::string RoadTest::LayOut(const std::set<std::string>& leftOut) const {
  const fs::path app = folder_ / "app", real = APP_DIR;
  fs::remove_all(app);
  for (const char* entry : {"lib", "host/host", "host/Plug-ins", "host/Frameworks", "agent/Nexcore",
                            "agent/VelorantPluginInterface.framework", "agent/PluginFiles"}) {
    if (leftOut.contains(entry)) continue;
    fs::create_directories((app / entry).parent_path());
    if (fs::is_directory(real / entry)) {
      fs::create_symlink(real / entry, app / entry);
    } else {
      fs::copy_file(real / entry, app / entry);  // a program finds the others by its real path
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
