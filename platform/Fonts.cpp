#include "platform/Fonts.h"

#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <tuple>
#include <utility>

#include "platform/Folders.h"
#include "platform/TextEncoding.h"

namespace platform {

namespace {

struct ConfigFree {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, ConfigFree>;

// Returns null if the configuration cannot be read. An empty name means the user's own configuration.
Config LoadConfigWithoutFonts(const std::string& file) {
  if (file.empty()) return Config(FcInitLoadConfig());
  Config config(FcConfigCreate());
  const auto* name = reinterpret_cast<const FcChar8*>(file.c_str());
  return config && FcConfigParseAndLoad(config.get(), name, FcTrue) ? std::move(config) : nullptr;
}
Config LoadConfig(const std::string& file) {
  Config config = LoadConfigWithoutFonts(file);
  return config && FcConfigBuildFonts(config.get()) ? std::move(config) : nullptr;
}

std::string Text(const FcPattern* font, const char* object) {
  FcChar8* text = nullptr;
  return FcPatternGetString(font, object, 0, &text) == FcResultMatch ? reinterpret_cast<const char*>(text) : "";
}

// Variable fonts have a range instead of a number.
std::pair<double, double> RangeOf(const FcPattern* font, const char* object, double unknown) {
  double low = unknown, high = unknown;
  if (FcPatternGetDouble(font, object, 0, &low) == FcResultMatch) return {low, low};
  FcRange* range = nullptr;
  if (FcPatternGetRange(font, object, 0, &range) == FcResultMatch) FcRangeGetDouble(range, &low, &high);
  return {low, high};
}

void TakeStyle(const FcPattern* pattern, ActiveFont& font) {
  FcChar8* family = nullptr;
  for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i) {
    font.families.emplace_back(reinterpret_cast<const char*>(family));
  }
  const auto [low, high] = RangeOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR);
  font.lightest = static_cast<int>(FcWeightToOpenTypeDouble(low));
  font.heaviest = static_cast<int>(FcWeightToOpenTypeDouble(high));
  int slant = FC_SLANT_ROMAN;
  FcPatternGetInteger(pattern, FC_SLANT, 0, &slant);
  font.isItalic = slant != FC_SLANT_ROMAN;
  font.stretch = static_cast<int>(RangeOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL).first);
}

void AddFont(const FcPattern* pattern, FontSnapshot& snapshot) {
  std::string name = Text(pattern, FC_POSTSCRIPT_NAME);
  if (!name.empty()) snapshot.postScriptNames.insert(name);
  FcBool scalable = FcFalse;
  FcPatternGetBool(pattern, FC_SCALABLE, 0, &scalable);
  int index = 0;
  FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
  // The upper half of the index numbers the named instances of a variable font, which are not faces.
  if (!scalable || (index >> 16) != 0) return;
  ActiveFont font{std::move(name), Text(pattern, FC_FAMILY), Text(pattern, FC_FILE), index & 0xFFFF};
  TakeStyle(pattern, font);
  snapshot.fonts.push_back(std::move(font));
}

// A time of a file or of the clock that stamps files, in nanoseconds.
int64_t Nanoseconds(const timespec& time) { return time.tv_sec * int64_t{1'000'000'000} + time.tv_nsec; }
int64_t FileSystemNow() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return Nanoseconds(now);
}

// The identity and the times of a path; all 0 if it does not exist.
struct Stamp {
  dev_t device = 0;
  ino_t inode = 0;
  int64_t modified = 0, changed = 0;
  bool operator==(const Stamp&) const = default;

  static Stamp Of(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino, Nanoseconds(info.st_mtim), Nanoseconds(info.st_ctim)};
  }
  // True if a change after `time` could leave the same times. The system's clock for files ticks every few
  // milliseconds; a file system with whole seconds, or pairs of them, has no fraction.
  bool MayHideChangeAfter(int64_t time) const {
    constexpr int64_t kTick = 50'000'000, kCoarseTick = 2'000'000'000;
    const int64_t tick = changed % 1'000'000'000 == 0 ? kCoarseTick : kTick;
    return std::max(modified, changed) > time - tick;
  }
};

// A snapshot with the stamps that show whether it is still valid.
class StampedSnapshot {
 public:
  explicit StampedSnapshot(std::string configFile) : configFile_(std::move(configFile)) {
    const int64_t start = FileSystemNow();
    auto snapshot = std::make_shared<FontSnapshot>();
    if (const Config config = LoadConfig(configFile_)) {
      const FcFontSet* fonts = FcConfigGetFonts(config.get(), FcSetSystem);
      for (int i = 0; fonts && i < fonts->nfont; ++i) AddFont(fonts->fonts[i], *snapshot);
      StampAll(*config, start);
    }
    snapshot_ = std::move(snapshot);
  }

  const std::shared_ptr<const FontSnapshot>& Get() const { return snapshot_; }

  bool IsCurrent(const std::string& configFile) const {
    return isReusable_ && configFile == configFile_ &&
           std::all_of(stamps_.begin(), stamps_.end(),
                       [](const auto& stamp) { return Stamp::Of(stamp.first) == stamp.second; });
  }

 private:
  // Stamps everything that decides what is active: the configuration files, the folders whose files it includes, and
  // all font folders, also those that do not exist yet.
  void StampAll(FcConfig& config, int64_t start) {
    std::set<std::string> paths;
    const auto take = [&](FcStrList* list, bool withFolder) {
      while (const FcChar8* item = FcStrListNext(list)) {
        std::string path = reinterpret_cast<const char*>(item);
        if (withFolder && path != configFile_) paths.insert(path.substr(0, path.rfind('/') + 1));
        paths.insert(std::move(path));
      }
      FcStrListDone(list);
    };
    take(FcConfigGetConfigFiles(&config), true);
    take(FcConfigGetConfigDirs(&config), false);
    take(FcConfigGetFontDirs(&config), false);
    isReusable_ = true;
    for (const std::string& path : paths) {
      const Stamp stamp = Stamp::Of(path);
      // Something may have changed while the fonts were read, or right afterwards without a visible trace.
      if (stamp.MayHideChangeAfter(start)) isReusable_ = false;
      stamps_.emplace_back(path, stamp);
    }
  }

  std::string configFile_;
  std::shared_ptr<const FontSnapshot> snapshot_;
  std::vector<std::pair<std::string, Stamp>> stamps_;
  bool isReusable_ = false;
};

std::vector<std::string> TextsOf(FcStrList* list) {
  std::vector<std::string> texts;
  while (const FcChar8* item = FcStrListNext(list)) texts.emplace_back(reinterpret_cast<const char*>(item));
  FcStrListDone(list);
  return texts;
}

}  // namespace

FontServiceSetup GetFontServiceSetup() {
  FontServiceSetup setup;
  const Config config = LoadConfig(GetPlaces().fontConfigFile);
  if (!config) return setup;
  setup.isReadable = true;
  setup.configFiles = TextsOf(FcConfigGetConfigFiles(config.get()));
  setup.folders = TextsOf(FcConfigGetFontDirs(config.get()));
  return setup;
}

std::shared_ptr<const FontSnapshot> GetFontSnapshot() {
  static std::mutex sMutex;
  static std::unique_ptr<const StampedSnapshot> sLast;
  const std::string configFile = GetPlaces().fontConfigFile;
  const std::lock_guard lock(sMutex);
  if (!sLast || !sLast->IsCurrent(configFile)) sLast = std::make_unique<const StampedSnapshot>(configFile);
  return sLast->Get();
}

const ActiveFont* FindFace(const FontSnapshot& snapshot, const std::string& family, int weight, bool isItalic,
                           int stretch) {
  constexpr int kWeightTolerance = 50, kStretchTolerance = 5;
  const auto fits = [&](const ActiveFont& font) {
    return font.isItalic == isItalic && weight >= font.lightest - kWeightTolerance &&
           weight <= font.heaviest + kWeightTolerance && std::abs(font.stretch - stretch) <= kStretchTolerance &&
           std::any_of(font.families.begin(), font.families.end(),
                       [&](const std::string& name) { return EqualCaseless(name, family); });
  };
  const auto found = std::find_if(snapshot.fonts.begin(), snapshot.fonts.end(), fits);
  return found == snapshot.fonts.end() ? nullptr : &*found;
}

std::vector<std::string> InterchangeableFamilies(const std::string& family) {
  std::vector<std::string> families;
  const Config config = LoadConfigWithoutFonts(GetPlaces().fontConfigFile);
  const std::unique_ptr<FcPattern, void (*)(FcPattern*)> pattern(FcPatternCreate(), FcPatternDestroy);
  if (!config || !pattern) return families;
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcConfigSubstitute(config.get(), pattern.get(), FcMatchPattern);
  FcValue value;
  FcValueBinding binding = FcValueBindingWeak;
  for (int i = 0; FcPatternGetWithBinding(pattern.get(), FC_FAMILY, i, &value, &binding) == FcResultMatch; ++i) {
    // An alias with the binding "same" gets that of the family itself, which is strong.
    if (binding != FcValueBindingStrong || value.type != FcTypeString) continue;
    families.emplace_back(reinterpret_cast<const char*>(value.u.s));
    if (EqualCaseless(families.back(), family)) families.pop_back();
  }
  return families;
}

bool IsPostScriptNameActive(const std::string& name) { return GetFontSnapshot()->postScriptNames.contains(name); }
std::set<std::string> ActivePostScriptNames() { return GetFontSnapshot()->postScriptNames; }
std::vector<ActiveFont> ActiveFonts() { return GetFontSnapshot()->fonts; }

}  // namespace platform
