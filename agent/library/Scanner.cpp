#include "agent/library/Scanner.h"

#include <malloc.h>

#include <algorithm>
#include <map>
#include <set>

#include "platform/Fonts.h"

namespace agent {

namespace {

// Unchanged and vanished files are cheap, so a step handles this many of them.
constexpr size_t kCheapOfStep = 256;
// Files that are read are stored together, which costs little more than to store one of them. Requests wait meanwhile.
constexpr size_t kStoredOfStep = 16;
// Files that the readers have or have read.
constexpr size_t kMostAhead = 64;

using Place = std::pair<uint64_t, uint64_t>;  // device and inode
Place PlaceOf(const FileIdentity& identity) { return {identity.device, identity.inode}; }

KnownFile Known(const IndexedFile& file, uint32_t workgroupID, bool isSeen) {
  return {file.path, file.content.problem, file.identity, workgroupID, file.content.verdict, isSeen};
}

std::vector<Font> FontsOf(const IndexedFile& file, uint32_t workgroupID) {
  std::vector<Font> fonts;
  for (size_t i = 0; i < file.content.faces.size(); ++i) {
    Font font;
    font.id = file.numbers[i].id;
    font.added = static_cast<uint32_t>(file.numbers[i].added);
    font.familyID = file.numbers[i].familyID;
    font.workgroupID = workgroupID;
    font.path = file.path;
    font.fileSize = static_cast<uint32_t>(file.identity.size);
    font.face = file.content.faces[i];
    fonts.push_back(font);
  }
  return fonts;
}

}  // namespace

Scanner::Scanner(const Parts& parts, Workgroups workgroups, ScanEvents events)
    : parts_(parts), workgroups_(std::move(workgroups)), events_(std::move(events)) {
  LoadIndex();
}

// Fills the table with what the last run has found. The first scan removes what is gone since, before anybody is told
// of a font.
void Scanner::LoadIndex() {
  const bool isNumbered = parts_.index.Revision() == parts_.user.Revision();
  const auto take = [this](const IndexedFile& file) {
    KnownFile known = Known(file, kFontLibraryID, false);
    // A kill in time leaves a moved file at both places. Whichever is still there is read again.
    const bool isMoved = std::ranges::any_of(
        file.numbers, [this](const FontNumber& number) { return parts_.table.Find(number.id) != nullptr; });
    if (isMoved) {
      known.identity = {};
    } else {
      parts_.table.ReplaceFile(file.path, FontsOf(file, kFontLibraryID));
    }
    known_.Put(known);
  };
  Files others;
  parts_.index.Load([&](IndexedFile&& file) {
    if (!isNumbered) return others.push_back(std::move(file));
    take(file);
  });
  // Without numbers every file is read again.
  if (others.empty() || !Number(others)) return;
  for (const IndexedFile& file : others) take(file);
  ChangeIndex(others, {});
}

// Gives all faces lasting IDs, or none.
bool Scanner::Number(Files& files) {
  try {
    Transaction transaction(parts_.user.Tables());
    for (IndexedFile& file : files) {
      file.numbers.clear();
      for (const FontFace& face : file.content.faces) {
        file.numbers.push_back(parts_.user.FontID(file.path, face, file.identity));
      }
    }
    transaction.Commit();
    return true;
  } catch (const StoreError& error) {
    NoteStoreProblem(files.front().path, error);
    // On a full disk the fonts get IDs for this session.
    return parts_.user.KeepInMemory(error) && Number(files);
  }
}

void Scanner::Start() {
  walk_ = std::make_unique<FolderWalk>(workgroups_, parts_.active.Root());
  readers_ = std::make_unique<FontReaders>(events_.canContinue);
  known_.ForEach([](KnownFile& file) { file.isSeen = false; });
  systemFiles_.clear();
  storeProblems_.clear();
  next_ = 0;
  phase_ = Phase::kWalking;
}

Scanner::Outcome Scanner::Step() {
  switch (phase_) {
    case Phase::kIdle: return Outcome::kFinished;
    case Phase::kWalking: {
      const std::string folder = walk_->Next();
      if (events_.enteringFolder && !folder.empty()) events_.enteringFolder(folder);
      lastRead_ = walk_->Step();
      if (walk_->IsDone()) BeginReading();
      return Outcome::kMore;
    }
    case Phase::kReading: return ReadNext();
    case Phase::kDropping: break;
  }
  if (DropSome()) return Outcome::kMore;
  Finish();
  return Outcome::kFinished;
}

void Scanner::BeginReading() {
  TakeSystemFiles();
  phase_ = Phase::kReading;
}

Scanner::Outcome Scanner::ReadNext() {
  const size_t before = next_;
  AskAhead();
  if (StoreAnswers() > 0 || next_ > before) return Outcome::kMore;
  if (!readings_.empty()) return Outcome::kMustWait;
  BeginDropping();
  return Outcome::kMore;
}

void Scanner::AskAhead() {
  const std::vector<FoundFile>& files = walk_->Files();
  const size_t end = std::min(next_ + kCheapOfStep, files.size() + systemFiles_.size());
  while (next_ < end && readings_.size() < kMostAhead) {
    const FoundFile& file = next_ < files.size() ? files[next_] : systemFiles_[next_ - files.size()];
    ++next_;
    TakeFile(file);
  }
}

// Has the file read, unless it is known.
void Scanner::TakeFile(const FoundFile& file) {
  KnownFile* known = known_.Find(file.path);
  if (known && known->isSeen) return;
  const bool isSame = known && known->identity == file.identity;
  // A file that could not be read may be readable now, even with the same date.
  if (isSame && known->verdict != FontVerdict::kBroken) {
    known->isSeen = true;
    if (known->workgroupID == file.workgroupID) return;
    known->workgroupID = file.workgroupID;
    parts_.table.SetWorkgroupOfFile(file.path, file.workgroupID);
    return;
  }
  if (known) known->isSeen = true;
  readers_->Ask(file.path);
  readings_.push_back({file, known && !isSame});
}

// Returns how many answers there were.
size_t Scanner::StoreAnswers() {
  Files files;
  std::vector<Reading> readings;
  while (files.size() < kStoredOfStep) {
    std::optional<FontFileContent> content = readers_->TakeOldest();
    if (!content) break;
    readings.push_back(std::move(readings_.front()));
    readings_.pop_front();
    const FoundFile& file = readings.back().file;
    lastRead_ = file.path;
    files.push_back({file.path, file.identity, std::move(*content), {}});
  }
  const size_t count = files.size();
  if (count > 0) Store(std::move(files), readings);
  return count;
}

// Files whose fonts cannot be numbered are left out.
void Scanner::Store(Files files, const std::vector<Reading>& readings) {
  if (!Number(files)) return;
  for (size_t i = 0; i < files.size(); ++i) {
    const uint32_t workgroupID = readings[i].file.workgroupID;
    PutFonts(files[i], workgroupID);
    known_.Put(Known(files[i], workgroupID, true));
    if (readings[i].isReplaced && events_.fileReplaced) events_.fileReplaced(files[i].path);
  }
  ChangeIndex(files, {});
}

void Scanner::PutFonts(const IndexedFile& file, uint32_t workgroupID) {
  const std::vector<Font> gone = parts_.table.ReplaceFile(file.path, FontsOf(file, workgroupID));
  for (const FontNumber& number : file.numbers) {
    if (number.former != 0 && events_.fontRenewed) events_.fontRenewed(number.former, number.id);
  }
  if (!gone.empty() && events_.fontsGone) events_.fontsGone(file.path, gone);
}

// A failure of the index, for example a full disk or a deleted file, only costs time.
void Scanner::ChangeIndex(const Files& put, const std::vector<std::string>& removed) {
  // The numbers of a store in memory mean nothing to the next start.
  if (!parts_.user.Unwritable().empty()) return;
  try {
    parts_.index.Change(put, removed, parts_.user.Revision());
  } catch (const StoreError& error) {
    NoteStoreProblem(put.empty() ? removed.front() : put.front().path, error);
  }
}

void Scanner::NoteStoreProblem(const std::string& path, const StoreError& error) {
  const auto isSame = [&](const ScanProblem& problem) { return problem.message == error.what(); };
  if (std::none_of(storeProblems_.begin(), storeProblems_.end(), isSame))
    storeProblems_.push_back({path, error.what()});
}

void Scanner::BeginDropping() {
  known_.ForEach([this](const KnownFile& file) {
    if (!file.isSeen) vanished_.push_back(file.path);
  });
  phase_ = Phase::kDropping;
}

// Returns false if there is nothing to drop.
bool Scanner::DropSome() {
  std::vector<std::string> dropped;
  while (!vanished_.empty() && dropped.size() < kCheapOfStep) {
    const SharedText path = vanished_.back();
    vanished_.pop_back();
    dropped.emplace_back(path);
    known_.Remove(path);
    const std::vector<Font> gone = parts_.table.ReplaceFile(dropped.back(), {});
    // What vanished before the first scan was never there for anybody.
    if (finishedOnce_ && !gone.empty() && events_.fontsGone) events_.fontsGone(dropped.back(), gone);
  }
  if (!dropped.empty()) ChangeIndex({}, dropped);
  return !dropped.empty();
}

void Scanner::Finish() {
  report_ = {};
  report_.problems = walk_->Problems();
  known_.ForEach([this](const KnownFile& file) {
    if (file.workgroupID == kSystemFontsID) return;
    if (file.verdict == FontVerdict::kFont) ++report_.files;
    if (!file.problem.empty()) report_.problems.push_back({file.path, file.problem});
  });
  std::ranges::sort(report_.problems, {}, &ScanProblem::path);
  parts_.table.ForEach([this](const Font& font) { report_.faces += font.workgroupID != kSystemFontsID; });
  report_.problems.insert(report_.problems.end(), storeProblems_.begin(), storeProblems_.end());
  walk_.reset();
  readers_.reset();
  phase_ = Phase::kIdle;
  finishedOnce_ = true;
  // A scan needs much memory that nothing needs afterwards.
  parts_.index.ReleaseMemory();
  parts_.user.Tables().ReleaseMemory();
  malloc_trim(0);
}

ScanProgress Scanner::Progress() const {
  if (!IsRunning()) return {};
  return {next_ - readings_.size(), walk_->Files().size() + systemFiles_.size(), lastRead_};
}

// Asks the operating system for the files that are active in any case. A file of a library that it lists stays in the
// library.
void Scanner::TakeSystemFiles() {
  std::set<std::string> paths;
  const auto listed = platform::GetFontSnapshot();
  for (const platform::ActiveFont& font : listed->fonts) {
    if (!parts_.active.IsLinkOfAnyAgent(font.file)) paths.insert(font.file);
  }
  systemFiles_.clear();
  std::map<Place, bool> isOfLibrary;
  std::string problem;
  for (const std::string& path : paths) {
    FoundFile file{path, {}, kSystemFontsID};
    if (!FileIdentity::Of(path, file.identity, problem)) continue;
    isOfLibrary[PlaceOf(file.identity)] = false;
    systemFiles_.push_back(std::move(file));
  }
  std::vector<std::string> active;
  const auto takeLibraryFile = [&](std::string_view path, const FileIdentity& identity) {
    const auto found = isOfLibrary.find(PlaceOf(identity));
    if (found == isOfLibrary.end()) return;
    found->second = true;
    active.emplace_back(path);
  };
  if (walk_) {
    for (const FoundFile& file : walk_->Files()) takeLibraryFile(file.path, file.identity);
  } else {
    known_.ForEach([&](const KnownFile& file) {
      if (file.workgroupID != kSystemFontsID) takeLibraryFile(file.path, file.identity);
    });
  }
  std::erase_if(systemFiles_, [&](const FoundFile& file) { return isOfLibrary[PlaceOf(file.identity)]; });
  for (const FoundFile& file : systemFiles_) active.push_back(file.path);
  parts_.table.SetSystemActiveFiles(active);
}

void Scanner::RefreshSystemFonts() {
  if (IsRunning() || !finishedOnce_) return;
  TakeSystemFiles();
  std::optional<FontFileReader> reader;
  std::set<std::string> listed;
  for (const FoundFile& file : systemFiles_) {
    listed.insert(file.path);
    const KnownFile* known = known_.Find(file.path);
    if (known && known->workgroupID == kSystemFontsID && known->identity == file.identity) continue;
    if (!reader) reader.emplace();
    const bool isReplaced = known && !(known->identity == file.identity);
    Files read(1);
    read[0] = {file.path, file.identity, reader->Read(file.path), {}};
    Store(std::move(read), {Reading{file, isReplaced}});
  }
  known_.ForEach([&](const KnownFile& file) {
    if (file.workgroupID == kSystemFontsID && !listed.contains(file.path)) vanished_.push_back(file.path);
  });
  while (DropSome()) {
  }
}

}  // namespace agent
