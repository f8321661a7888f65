// The files in a document that is a ZIP archive, with libzip. Not thread-safe.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Readers/Document/ByteStream.h"

class ZipDocument {
 public:
  // Opens the archive; Problem says whether that failed.
  explicit ZipDocument(const std::string& path);
  ~ZipDocument();
  ZipDocument(const ZipDocument&) = delete;
  ZipDocument& operator=(const ZipDocument&) = delete;

  const std::string& Problem() const { return mProblem; }
  // The names of all files, in the archive's order; at most a hundred thousand.
  std::vector<std::string> Names() const;
  // The unpacked bytes of a file; null if there is none of this name. Must not outlive the archive. Encrypted files
  // fail at the first read.
  std::unique_ptr<ByteStream> Open(const std::string& name) const;

 private:
  struct Archive;
  std::unique_ptr<Archive> mArchive;
  std::string mProblem;
};
