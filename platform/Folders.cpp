#include "platform/Folders.h"

#include <unistd.h>

#include <cstdlib>

namespace platform {

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string Either(std::string value, const std::string& otherwise) { return value.empty() ? otherwise : value; }

Places WithDefaults(Places places) {
  places.home = Either(places.home, Either(Environment("HOME"), "/"));
  if (places.runtime.empty()) {
    const std::string runtime = Environment("XDG_RUNTIME_DIR");
    places.runtime = runtime.empty() ? "/tmp/velorant-" + std::to_string(getuid()) : runtime + "/velorant";
  }
  const std::string config = Either(Environment("XDG_CONFIG_HOME"), places.home + "/.config");
  places.preferencesFile = Either(places.preferencesFile, config + "/velorant/preferences.plist");
  const std::string state = Either(Environment("XDG_STATE_HOME"), places.home + "/.local/state");
  places.logs = Either(places.logs, state + "/velorant/logs");
  return places;
}

Places& Current() {
  static Places places = WithDefaults({});
  return places;
}

}  // namespace

void SetPlaces(const Places& places) { Current() = WithDefaults(places); }
const Places& GetPlaces() { return Current(); }

std::string LocalLibraryFolder() { return GetPlaces().fileSystemRoot + "/Library"; }
std::string UserLibraryFolder() { return GetPlaces().home + "/Library"; }
std::string LocalFrameworksFolder() { return LocalLibraryFolder() + "/Frameworks"; }

}  // namespace platform
