#include "agent/webfonts/WebFonts.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <set>

#include "agent/include/CallEncoding.h"
#include "agent/unpacking/UnpackMessages.h"
#include "platform/Checksum.h"
#include "platform/ChildLimits.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

namespace fs = std::filesystem;
constexpr double kPatience = 2.0 * platform::kChildPatience * kUnpackSeconds;
constexpr double kProgressInterval = 0.1;  // seconds
constexpr size_t kLongestStem = 100;       // bytes of a file's name that its plain files keep

bool IsNamedLikeAPackedFont(const std::string& path) {
  const std::string extension = platform::ToLowercase(fs::path(path).extension().string());
  return extension == ".woff" || extension == ".woff2";
}

// Another file, and another content of a file, has another name. A file that is moved keeps its name.
std::string NameFor(const FoundFile& file) {
  const FileIdentity& id = file.identity;
  const std::string identity = std::to_string(id.device) + " " + std::to_string(id.inode) + " " +
                               std::to_string(id.size) + " " + std::to_string(id.modified);
  char sum[17];
  std::snprintf(sum, sizeof sum, "%016" PRIx64, platform::AddToChecksum(platform::kEmptyChecksum, identity));
  std::string stem = fs::path(file.path).stem().string().substr(0, kLongestStem);
  while (!platform::IsValidUTF8(stem)) stem.pop_back();
  return stem + "-" + sum;
}

// "NAME-FACE.ttf" is of NAME.
std::string NameOfPlain(const std::string& file) { return file.substr(0, file.rfind('-')); }
bool IsFirstFace(const std::string& file) { return file.ends_with("-0.ttf") || file.ends_with("-0.otf"); }

UnpackAnswer FirstOf(const std::vector<std::string>& messages) {
  return agent_protocol::FromJson<UnpackAnswer>(agent_protocol::Json::parse(messages[0]), "answer");
}

bool IsWhole(const std::vector<std::string>& messages) { return messages.size() > FirstOf(messages).fonts; }

std::vector<fs::directory_entry> FilesIn(const std::string& folder) {
  std::vector<fs::directory_entry> files;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) files.push_back(entry);
  return files;
}

}  // namespace

WebFonts::WebFonts(std::string cache, std::string worker, uint64_t mostBytes, platform::RunLoop& loop,
                   WebFontEvents events)
    : cache_(std::move(cache)),
      mostBytes_(mostBytes),
      loop_(loop),
      events_(std::move(events)),
      worker_({std::move(worker), "unpacked", kPatience, kLargestFont + (1u << 20), IsWhole}, loop) {}

WebFonts::~WebFonts() = default;

void WebFonts::SetFolder(const std::string& folder) {
  folder_ = folder;
  unusable_.clear();
  problems_.clear();
}

void WebFonts::Update() {
  isAgain_ = phase_ != Phase::kIdle;
  if (isAgain_ || folder_.empty()) return;
  phase_ = Phase::kWalking;
  progress_ = {};
  hasChanged_ = hadProgress_ = false;
  lastProgress_ = platform::Clock::Steady();
  walk_ = std::make_unique<FolderWalk>(Workgroups{{kWebFontsID, "", kWebFontsType, {folder_}}}, cache_);
  PostStep();
}

void WebFonts::PostStep() {
  loop_.Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) Step();
  });
}

void WebFonts::Step() {
  if (phase_ == Phase::kWalking) {
    walk_->Step();
    if (walk_->IsDone()) Compare();
    return PostStep();
  }
  if (waiting_.empty() || folder_.empty()) return Finish();
  Tell();
  const Packed next = std::move(waiting_.back());
  waiting_.pop_back();
  ++progress_.step;
  progress_.text = next.path;
  Unpack(next);
}

// Finds what is to be unpacked, and removes the plain files of packed ones that are gone.
void WebFonts::Compare() {
  phase_ = Phase::kUnpacking;
  std::map<std::string, Packed> packed;
  for (const FoundFile& file : walk_->Files()) {
    if (!IsNamedLikeAPackedFont(file.path)) continue;
    const std::string name = NameFor(file);
    packed[name] = {file.path, name, file.identity.size};
  }
  walk_.reset();
  std::set<std::string> plain;
  bytes_ = 0;
  for (const fs::directory_entry& entry : FilesIn(cache_)) {
    const std::string file = entry.path().filename().string(), name = NameOfPlain(file);
    std::error_code error;
    if (packed.contains(name)) {
      if (IsFirstFace(file)) plain.insert(name);
      const uint64_t size = entry.file_size(error);
      if (!error) bytes_ += size;
    } else {
      hasChanged_ = fs::remove(entry.path(), error) || hasChanged_;
    }
  }
  problems_.clear();
  waiting_.clear();
  for (const auto& [name, file] : packed) {
    const auto bad = unusable_.find(name);
    if (bad != unusable_.end()) problems_.push_back({file.path, bad->second});
    if (bad == unusable_.end() && !plain.contains(name)) waiting_.push_back(file);
  }
  std::ranges::reverse(waiting_);  // the first one is taken first
  progress_.steps = waiting_.size();
}

void WebFonts::Unpack(const Packed& file) {
  if (file.size > kLargestPackedFile) {
    NoteProblem(file, "is too large for a font file");
    return PostStep();
  }
  worker_.Ask({file.path}, [this, file](const Worker::Answer& answer) { OnUnpacked(file, answer); });
}

void WebFonts::OnUnpacked(const Packed& file, const Worker::Answer& answer) {
  std::string problem = answer.problem;
  if (problem.empty()) problem = FirstOf(answer.messages).problem;
  if (!problem.empty()) {
    NoteProblem(file, problem);
  } else if (Store(file, answer.messages)) {
    hasChanged_ = true;
  }
  PostStep();
}

// The fonts of a file are stored last to first, so that a file whose first font is there is complete.
bool WebFonts::Store(const Packed& file, const std::vector<std::string>& messages) {
  uint64_t size = 0;
  for (size_t i = 1; i < messages.size(); ++i) size += messages[i].size();
  if (bytes_ + size > mostBytes_) {
    NoteProblem(file, "the unpacked fonts would need more than " + std::to_string(mostBytes_ >> 20) + " MiB");
    return false;
  }
  std::error_code error = platform::MakeFolder(cache_, 0700);
  for (size_t i = messages.size(); i-- > 1 && !error;) {
    const bool isPostScript = messages[i].starts_with("OTTO");
    const std::string name = file.name + "-" + std::to_string(i - 1) + (isPostScript ? ".otf" : ".ttf");
    error = platform::ReplaceFile(cache_ + "/" + name, messages[i]);
  }
  if (error) {
    // A full disk may have room the next time.
    problems_.push_back({file.path, "can't be unpacked: " + platform::DescribeError(error)});
    events_.report(file.path + ": " + problems_.back().message);
    return false;
  }
  bytes_ += size;
  return true;
}

void WebFonts::NoteProblem(const Packed& file, const std::string& problem) {
  unusable_[file.name] = problem;
  problems_.push_back({file.path, problem});
  events_.report(file.path + ": " + problem);
}

void WebFonts::Tell() {
  const double now = platform::Clock::Steady();
  if (now - lastProgress_ < kProgressInterval) return;
  lastProgress_ = now;
  hadProgress_ = true;
  events_.progress(progress_);
}

void WebFonts::Finish() {
  phase_ = Phase::kIdle;
  waiting_.clear();
  const bool hasChanged = hasChanged_, hadProgress = hadProgress_;
  if (isAgain_) Update();
  events_.finished(hasChanged, hadProgress);
}

}  // namespace agent
