#include "Readers/FontParser.h"

#include <string_view>

#include "platform/Files.h"

FontParser::EFileType FontParser::DetermineFileTypeOfFile(const platform::FileURL& url, const std::string& path) {
  constexpr std::string_view kPDFMark = "%PDF";
  constexpr int kSearchedBytes = 1000;
  FStreamWrapper stream;
  if (!OpenFileStreamFromCFURLRef(url, path, stream, true)) return kEPSFile;
  for (int at = 0; at < kSearchedBytes; at += static_cast<int>(kPDFMark.size())) {
    // Compares only whole groups of four bytes. So the mark counts only at multiples of 4, and a shorter file without
    // it is of unknown type. What else is read from such files depends on both.
    char group[kPDFMark.size()];
    std::streamsize size = sizeof group;
    if (ReadStream(stream, size, group) != 0) return kUnknownFile;
    if (std::string_view(group, sizeof group) == kPDFMark) return kPDFFile;
  }
  return kEPSFile;
}

bool FontParser::FindFile() {
  const bool isFound = OpenFileStreamFromCFURLRef(mURL, mPath, mStream, true);
  mStream.close();
  return isFound;
}

namespace {

constexpr std::string_view kFilesComment = "%%DocumentFiles:";

// Reads a line up to its CR or LF, or up to the length limit; the rest is the next line. Returns false at the end of
// the file.
bool ReadPieceOfLine(FStreamWrapper& stream, std::string& outPiece, bool& outIsComplete) {
  constexpr size_t kMaxPiece = 399;
  outPiece.clear();
  outIsComplete = false;
  while (outPiece.size() < kMaxPiece) {
    const int c = stream.get();
    if (!stream.good()) return !outPiece.empty();
    outIsComplete = c == '\r' || c == '\n';
    if (outIsComplete) break;
    outPiece.push_back(static_cast<char>(c));
  }
  return true;
}

bool CanBeOpened(const std::string& path) { return !platform::CheckReadable(path); }

void AddEmbeddedFile(std::string named, const std::string& folder, std::vector<std::string>& outPaths) {
  // Skips blanks before the path. Most producers write one after the comment, and no file would be found with it.
  named.erase(0, named.find_first_not_of(" \t"));
  std::string ignored, name;
  if (CanBeOpened(named)) {
    outPaths.push_back(named);
  } else if (std::string beside = folder + (SplitPath(named, ignored, name) ? name : named); CanBeOpened(beside)) {
    outPaths.push_back(std::move(beside));
  }
}

}  // namespace

void FontParser::ExtractEmbeddedFilesFromFile(const std::string& path, std::vector<std::string>& outPaths) {
  FStreamWrapper stream;
  if (!OpenFileStreamFromCFURLRef(platform::FileURL::FromFileSystemRepresentation(path), path, stream, true)) return;
  std::string folder, name, piece;
  SplitPath(path, folder, name);
  bool isComplete = true;
  for (bool isStart = true; ReadPieceOfLine(stream, piece, isComplete); isStart = isComplete) {
    if (!isStart || !piece.starts_with(kFilesComment)) continue;
    AddEmbeddedFile(piece.substr(kFilesComment.size()), folder, outPaths);
  }
}
