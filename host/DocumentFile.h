// Reading a document's file, and writing it anew with what was added. Of a file only the structure is kept in memory: what
// does not change is copied from file to file.
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
  kOther,  // shown and saved as it is; no text can be added
};

// Which file it is, and whether it was written since: compared, never looked into. Of no file: as it is made.
struct FileState {
  uint64_t device = 0, inode = 0, size = 0;
  int64_t seconds = 0, nanoseconds = 0;  // of its modification date

  bool operator==(const FileState& other) const = default;
};

struct DocumentContent {
  DocumentFormat format = DocumentFormat::kNone;
  platform::Descriptor file;           // on what was read, which stays even if the file is deleted or replaced
  FileState state;                     // of the file when it was read
  LayeredFile structure;               // of PSD and PSB
  std::vector<std::string> fontNames;  // distinct, in the order found
  std::string textProblem;             // why no text can be added; empty if it can
};

// The results below are empty or one line, "PATH: what is wrong", with the path as it is given here.

// A missing, empty or unreadable file, a folder or another thing that is no regular file, a layered document or a PDF that
// is damaged or cut off: `content` is unchanged. A file of an extension of layered documents must be one.
std::string ReadDocument(const std::string& path, DocumentContent& content);

// Whether the two show the same: they are layered documents that differ in their image resources (the metadata) at most.
bool ShowTheSame(const DocumentContent& one, const DocumentContent& other);

// Stages a new file for the path: the content, or a white picture of the format if it has no file yet, with one text layer
// for each font above it.
std::string StageDocument(const DocumentContent& content, DocumentFormat format,
                          const std::vector<std::string>& fontNames, const std::string& path,
                          platform::StagedFile& staged);

// Of what is there now, following links.
FileState StateOf(const std::string& path);
FileState StateOf(const platform::Descriptor& file);

// By the extension, in any case; kNone without one.
DocumentFormat FormatOfExtension(const std::string& path);
// Whether both names have the same extension, in any case.
bool HaveOneExtension(const std::string& path, const std::string& other);

// Absolute and without symbolic links as far as the path exists; of a file that is yet to be made, its folder must exist.
// The path as given where that fails.
std::string ResolvedPath(const std::string& path);

}  // namespace host
