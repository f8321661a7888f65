// Reads a document's file, and writes it again with additions. Only the structure of a file is in memory; what does not
// change is copied from file to file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/LayeredFile.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"

namespace host {

enum class DocumentFormat {
  kNone,  // no file yet
  kPSD,
  kPSB,
  kOther,  // opened and saved unchanged; text cannot be added
};

// Identifies a file and its last change; only compared. Default-constructed for no file.
struct FileState {
  uint64_t device = 0, inode = 0, size = 0;
  int64_t seconds = 0, nanoseconds = 0;  // modification date

  bool operator==(const FileState& other) const = default;
};

struct DocumentContent {
  DocumentFormat format = DocumentFormat::kNone;
  platform::Descriptor file;           // the file that was read, even if it was deleted or replaced
  FileState state;                     // state of the file when it was read
  LayeredFile structure;               // PSD and PSB only
  std::vector<std::string> fontNames;  // distinct, in the order found
  std::string textProblem;             // why text cannot be added; empty if it can
};

// The functions below return an empty text or one line, "PATH: what is wrong", with the path as given.

// Fails, with `content` unchanged, for a missing, empty or unreadable file, a folder or anything else that is not a
// regular file, and a damaged or truncated layered document or PDF. A file with the extension of layered documents must
// be one.
std::string ReadDocument(const std::string& path, DocumentContent& content);

// True if both look the same: layered documents that differ at most in their image resources (the metadata).
bool ShowTheSame(const DocumentContent& one, const DocumentContent& other);

// Stages a new file for the path: the content, or a white picture if it has no file yet, with one text layer above it
// for each font.
std::string StageDocument(const DocumentContent& content, DocumentFormat format,
                          const std::vector<std::string>& fontNames, const std::string& path,
                          platform::StagedFile& staged);

// The state of the file that is there now; follows links.
FileState StateOf(const std::string& path);
FileState StateOf(const platform::Descriptor& file);

// The format by the extension, ignoring case; kNone without an extension.
DocumentFormat FormatOfExtension(const std::string& path);
// True if both names have the same extension, ignoring case.
bool HaveOneExtension(const std::string& path, const std::string& other);

// Makes the path absolute and resolves symbolic links as far as it exists; for a new file, its folder must exist.
// Returns the path as given if that fails.
std::string ResolvedPath(const std::string& path);

}  // namespace host
