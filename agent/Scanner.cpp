#include "agent/Scanner.h"

#include <algorithm>
#include <set>

#include "platform/Fonts.h"

namespace agent {

namespace {

// Unchanged files cost next to nothing; so many of them make one step.
constexpr size_t kUnchangedPerStep = 256;

}  // namespace

Scanner::Scanner(const Parts& parts, std::vector<std::string> folders, ScanEvents events)
    : parts_(parts), folders_(std::move(folders)), events_(std::move(events)) {
  for (IndexedFile& file : parts_.index.Load()) {
    const std::string path = file.path;
    known_.emplace(path, std::move(file));
  }
}

void Scanner::Start() {
  walk_ = std::make_unique<FolderWalk>(folders_);
  seen_.clear();
  libraryFiles_.clear();
  systemFiles_.clear();
  storeProblems_.clear();
  next_ = 0;
  running_ = true;
}

bool Scanner::Step() {
  if (!running_) return false;
  if (!walk_->IsDone()) {
    lastRead_ = walk_->Step();
    if (walk_->IsDone()) BeginReading();
    return true;
  }
  if (systemFiles_.empty() && next_ == 0 && libraryFiles_.empty()) BeginReading();
  if (ReadNext()) return true;
  Finish();
  return false;
}

void Scanner::BeginReading() {
  for (const FoundFile& file : walk_->Files()) libraryFiles_[{file.identity.device, file.identity.inode}] = file.path;
  systemFiles_ = SystemFiles();
}

bool Scanner::ReadNext() {
  const std::vector<FoundFile>& files = walk_->Files();
  for (size_t i = 0; i < kUnchangedPerStep; ++i) {
    if (next_ == files.size() + systemFiles_.size()) return false;
    const bool isLibrary = next_ < files.size();
    const FoundFile& file = isLibrary ? files[next_] : systemFiles_[next_ - files.size()];
    ++next_;
    lastRead_ = file.path;
    if (!isLibrary) {
      NoteSystemFile(file);
      if (libraryFiles_.contains({file.identity.device, file.identity.inode})) continue;
    }
    if (TakeFile(file, isLibrary ? kFontLibrary.id : kSystemFonts.id)) break;
  }
  return true;
}

std::vector<FoundFile> Scanner::SystemFiles() const {
  std::set<std::string> paths;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) {
    if (!parts_.active.Holds(font.file)) paths.insert(font.file);
  }
  std::vector<FoundFile> files;
  std::string problem;
  for (const std::string& path : paths) {
    FoundFile file;
    file.path = path;
    if (FileIdentity::Of(path, file.identity, problem)) files.push_back(std::move(file));
  }
  return files;
}

// A library's file that the operating system lists by itself stays the library's, and is active.
void Scanner::NoteSystemFile(const FoundFile& file) {
  const auto library = libraryFiles_.find({file.identity.device, file.identity.inode});
  parts_.table.SetSystemActive(library == libraryFiles_.end() ? file.path : library->second, true);
}

bool Scanner::TakeFile(const FoundFile& file, uint32_t workgroupID) {
  const auto before = seen_.find(file.path);
  if (before != seen_.end()) return false;
  seen_[file.path] = workgroupID;
  const auto known = known_.find(file.path);
  const bool isUnchanged = known != known_.end() && known->second.identity == file.identity;
  if (isUnchanged) {
    const bool isListed = parts_.table.HasFile(file.path);
    if (!isListed && !known->second.content.faces.empty()) PutFonts(known->second, workgroupID);
    return false;
  }
  IndexedFile fresh{file.path, file.identity, reader_.Read(file.path)};
  const bool isReplaced = known != known_.end();
  PutFonts(fresh, workgroupID);
  StoreInIndex(fresh);
  known_[file.path] = std::move(fresh);
  if (isReplaced && events_.fileReplaced) events_.fileReplaced(file.path);
  return true;
}

// The index may fail, for want of room or because somebody deleted it, and nothing is lost but time.
void Scanner::StoreInIndex(const IndexedFile& file) {
  try {
    parts_.index.Put(file);
  } catch (const StoreError& error) {
    if (storeProblems_.empty()) storeProblems_.push_back({file.path, error.what()});
  }
}

void Scanner::PutFonts(const IndexedFile& file, uint32_t workgroupID) {
  std::vector<Font> fonts;
  for (const FontFace& face : file.content.faces) {
    Font font;
    font.id = parts_.user.FontID(file.path, face, file.identity);
    font.familyID = parts_.user.FamilyID(face.family);
    font.workgroupID = workgroupID;
    font.path = file.path;
    font.fileSize = file.identity.size;
    font.face = face;
    fonts.push_back(std::move(font));
  }
  const std::vector<Font> gone = parts_.table.ReplaceFile(file.path, fonts);
  if (!gone.empty() && events_.fontsGone) events_.fontsGone(file.path, gone);
}

void Scanner::Drop(const std::string& path) {
  const std::vector<Font> gone = parts_.table.ReplaceFile(path, {});
  known_.erase(path);
  try {
    parts_.index.Remove(path);
  } catch (const StoreError& error) {
    if (storeProblems_.empty()) storeProblems_.push_back({path, error.what()});
  }
  if (!gone.empty() && events_.fontsGone) events_.fontsGone(path, gone);
}

void Scanner::Finish() {
  std::vector<std::string> vanished;
  for (const auto& [path, file] : known_) {
    if (!seen_.contains(path)) vanished.push_back(path);
  }
  for (const std::string& path : vanished) Drop(path);

  report_ = {};
  report_.problems = walk_->Problems();
  for (const auto& [path, file] : known_) {
    if (seen_[path] != kFontLibrary.id) continue;
    if (!file.content.faces.empty()) ++report_.files;
    report_.faces += file.content.faces.size();
    if (!file.content.problem.empty()) report_.problems.push_back({path, file.content.problem});
  }
  report_.problems.insert(report_.problems.end(), storeProblems_.begin(), storeProblems_.end());
  walkedFolders_ = walk_->Folders();
  walk_.reset();
  running_ = false;
  finishedOnce_ = true;
}

ScanProgress Scanner::Progress() const {
  if (!running_) return {};
  return {next_, walk_->Files().size() + systemFiles_.size(), lastRead_};
}

void Scanner::RefreshSystemFonts() {
  if (running_ || !finishedOnce_) return;
  const std::vector<FoundFile> files = SystemFiles();
  const std::set<std::string> before = parts_.table.SystemActiveFiles();
  for (const std::string& path : before) parts_.table.SetSystemActive(path, false);
  std::set<std::string> listed;
  for (const FoundFile& file : files) {
    NoteSystemFile(file);
    listed.insert(file.path);
    if (libraryFiles_.contains({file.identity.device, file.identity.inode})) continue;
    const auto known = known_.find(file.path);
    if (known != known_.end() && !(known->second.identity == file.identity)) seen_.erase(file.path);
    TakeFile(file, kSystemFonts.id);
  }
  std::vector<std::string> vanished;
  for (const auto& [path, workgroupID] : seen_) {
    if (workgroupID == kSystemFonts.id && !listed.contains(path)) vanished.push_back(path);
  }
  for (const std::string& path : vanished) {
    Drop(path);
    seen_.erase(path);
  }
}

}  // namespace agent
