#include "agent/library/Scanner.h"

#include <algorithm>
#include <set>

#include "platform/Fonts.h"

namespace agent {

namespace {

// Unchanged files are cheap, so a step handles this many of them.
constexpr size_t kUnchangedPerStep = 256;

}  // namespace

Scanner::Scanner(const Parts& parts, Workgroups workgroups, ScanEvents events)
    : parts_(parts), workgroups_(std::move(workgroups)), events_(std::move(events)) {
  for (IndexedFile& file : parts_.index.Load()) {
    const std::string path = file.path;
    known_.emplace(path, std::move(file));
  }
}

void Scanner::Start() {
  walk_ = std::make_unique<FolderWalk>(workgroups_, parts_.active.Root());
  seen_.clear();
  libraryFiles_.clear();
  systemFiles_.clear();
  storeProblems_.clear();
  next_ = 0;
  running_ = true;
  phase_ = Phase::kWalking;
}

bool Scanner::Step() {
  if (!running_) return false;
  if (phase_ == Phase::kWalking) {
    if (events_.enteringFolder && !walk_->IsDone()) events_.enteringFolder(walk_->Next());
    lastRead_ = walk_->Step();
    if (walk_->IsDone()) BeginReading();
    return true;
  }
  if (ReadNext()) return true;
  Finish();
  return false;
}

void Scanner::BeginReading() {
  for (const FoundFile& file : walk_->Files()) libraryFiles_[{file.identity.device, file.identity.inode}] = file.path;
  TakeSystemFiles();
  phase_ = Phase::kReading;
}

bool Scanner::ReadNext() {
  const std::vector<FoundFile>& files = walk_->Files();
  for (size_t i = 0; i < kUnchangedPerStep; ++i) {
    if (next_ == files.size() + systemFiles_.size()) return false;
    const bool isLibrary = next_ < files.size();
    const FoundFile& file = isLibrary ? files[next_] : systemFiles_[next_ - files.size()];
    ++next_;
    lastRead_ = file.path;
    if (!isLibrary && IsLibraryFile(file)) continue;
    if (TakeFile(file)) break;
  }
  return true;
}

bool Scanner::IsLibraryFile(const FoundFile& file) const {
  return libraryFiles_.contains({file.identity.device, file.identity.inode});
}

void Scanner::TakeSystemFiles() {
  std::set<std::string> paths;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) {
    if (!parts_.active.IsLinkOfAnyAgent(font.file)) paths.insert(font.file);
  }
  systemFiles_.clear();
  std::set<std::string> active;
  std::string problem;
  for (const std::string& path : paths) {
    FoundFile file;
    file.path = path;
    if (!FileIdentity::Of(path, file.identity, problem)) continue;
    // A file of the library that the operating system also lists stays in the library and is active.
    const auto library = libraryFiles_.find({file.identity.device, file.identity.inode});
    active.insert(library == libraryFiles_.end() ? path : library->second);
    systemFiles_.push_back(std::move(file));
  }
  parts_.table.SetSystemActiveFiles(std::move(active));
}

bool Scanner::TakeFile(const FoundFile& file) {
  const uint32_t workgroupID = file.workgroupID;
  const auto before = seen_.find(file.path);
  if (before != seen_.end()) return false;
  seen_[file.path] = workgroupID;
  const auto known = known_.find(file.path);
  // A file that could not be read may be readable now, even with the same date.
  const bool isUnchanged = known != known_.end() && known->second.identity == file.identity &&
                           known->second.content.verdict != FontVerdict::kBroken;
  if (isUnchanged) {
    const std::vector<const Font*> listed = parts_.table.OfFile(file.path);
    const bool isListed = !listed.empty() && listed.front()->workgroupID == workgroupID;
    if (!isListed && !known->second.content.faces.empty()) PutFonts(known->second, workgroupID);
    return false;
  }
  IndexedFile fresh{file.path, file.identity, reader_.Read(file.path)};
  const bool isReplaced = known != known_.end() && !(known->second.identity == file.identity);
  if (!PutFonts(fresh, workgroupID)) return true;
  StoreInIndex(fresh);
  known_[file.path] = std::move(fresh);
  if (isReplaced && events_.fileReplaced) events_.fileReplaced(file.path);
  return true;
}

// A failure of the index, for example a full disk or a deleted file, only costs time.
void Scanner::StoreInIndex(const IndexedFile& file) {
  try {
    parts_.index.Put(file);
  } catch (const StoreError& error) {
    NoteStoreProblem(file.path, error);
  }
}

void Scanner::NoteStoreProblem(const std::string& path, const StoreError& error) {
  const auto isSame = [&](const ScanProblem& problem) { return problem.message == error.what(); };
  if (std::none_of(storeProblems_.begin(), storeProblems_.end(), isSame))
    storeProblems_.push_back({path, error.what()});
}

// Returns false if the fonts cannot be given lasting IDs.
bool Scanner::PutFonts(const IndexedFile& file, uint32_t workgroupID) {
  std::vector<Font> fonts;
  std::vector<FontNumber> renewed;
  for (const FontFace& face : file.content.faces) {
    Font font;
    try {
      const FontNumber number = parts_.user.FontID(file.path, face, file.identity);
      if (number.former != 0) renewed.push_back(number);
      font.id = number.id;
      font.added = number.added;
      font.familyID = parts_.user.FamilyID(face.family);
    } catch (const StoreError& error) {
      NoteStoreProblem(file.path, error);
      return false;
    }
    font.workgroupID = workgroupID;
    font.path = file.path;
    font.fileSize = file.identity.size;
    font.face = face;
    fonts.push_back(std::move(font));
  }
  const std::vector<Font> gone = parts_.table.ReplaceFile(file.path, fonts);
  for (const FontNumber& number : renewed) {
    if (events_.fontRenewed) events_.fontRenewed(number.former, number.id);
  }
  if (!gone.empty() && events_.fontsGone) events_.fontsGone(file.path, gone);
  return true;
}

void Scanner::Drop(const std::string& path) {
  const std::vector<Font> gone = parts_.table.ReplaceFile(path, {});
  known_.erase(path);
  try {
    parts_.index.Remove(path);
  } catch (const StoreError& error) {
    NoteStoreProblem(path, error);
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
    if (seen_[path] == kSystemFontsID) continue;
    if (!file.content.faces.empty()) ++report_.files;
    report_.faces += file.content.faces.size();
    if (!file.content.problem.empty()) report_.problems.push_back({path, file.content.problem});
  }
  report_.problems.insert(report_.problems.end(), storeProblems_.begin(), storeProblems_.end());
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
  TakeSystemFiles();
  std::set<std::string> listed;
  for (const FoundFile& file : systemFiles_) {
    if (IsLibraryFile(file)) continue;
    listed.insert(file.path);
    const auto known = known_.find(file.path);
    if (known != known_.end() && !(known->second.identity == file.identity)) seen_.erase(file.path);
    TakeFile(file);
  }
  std::vector<std::string> vanished;
  for (const auto& [path, workgroupID] : seen_) {
    if (workgroupID == kSystemFontsID && !listed.contains(path)) vanished.push_back(path);
  }
  for (const std::string& path : vanished) {
    Drop(path);
    seen_.erase(path);
  }
}

}  // namespace agent
