// The file that a parser reads and writes: a standard file stream in binary form, and the operations on files that all
// parsers share. One thread at a time.
#pragma once

#include <fstream>
#include <string>

#include "platform/FileURL.h"

class FStreamWrapper {
 public:
  FStreamWrapper() = default;
  // For who reads in blocks of its own: a read takes from the file what is asked for and no more.
  struct Unbuffered {};
  explicit FStreamWrapper(Unbuffered) { mStream.rdbuf()->pubsetbuf(nullptr, 0); }

  // The stream's own operations, with the stream's own meaning.
  //
  // Refuses what is no regular file, since opening a pipe could wait forever. An open stream stays open and gets its fail bit.
  void open(const char* path, std::ios_base::openmode mode);
  // The place that was opened last; empty before the first success.
  const std::string& Path() const { return mPath; }
  bool is_open() const { return mStream.is_open(); }
  void close() { mStream.close(); }
  void read(char* buffer, std::streamsize size) { mStream.read(buffer, size); }
  void write(const char* buffer, std::streamsize size) { mStream.write(buffer, size); }
  int get() { return mStream.get(); }
  int peek() { return mStream.peek(); }
  void ignore(std::streamsize count = 1, int delimiter = std::fstream::traits_type::eof()) {
    mStream.ignore(count, delimiter);
  }
  std::streamsize gcount() const { return mStream.gcount(); }
  std::streamoff tellg() { return mStream.tellg(); }  // -1 in a failed state
  std::streamoff tellp() { return mStream.tellp(); }
  void seekg(std::streamoff offset, std::ios_base::seekdir from = std::ios_base::beg) { mStream.seekg(offset, from); }
  void seekp(std::streamoff offset, std::ios_base::seekdir from = std::ios_base::beg) { mStream.seekp(offset, from); }
  bool good() const { return mStream.good(); }
  bool eof() const { return mStream.eof(); }  // the end-of-file bit
  void clear() { mStream.clear(); }

  // In bytes; -1 in a failed state. The read position stays.
  std::streamoff GetStreamLength();
  // Appends zero bytes to a file that is shorter than `length` bytes. The write position stays; a failure sets the
  // stream's fail bit.
  void LengthenFileStream(std::streamoff length);

 private:
  std::fstream mStream;
  std::string mPath;
};

// Reads `size` bytes. 0; or -1 with `size` set to what came and the end-of-file state cleared.
int ReadStream(FStreamWrapper& stream, std::streamsize& size, char* buffer);
// Writes `size` bytes. 0 if the write position moved by at least that; else -1 with `size` set to how far it moved.
int WriteStream(FStreamWrapper& stream, std::streamsize& size, const char* buffer);

// Opens the file for reading or, without readOnly, for reading and writing. The place is the URL's; the path, as UTF-8,
// names the file where the URL can't, and appears in the trace. False if the file can't be opened, which is traced.
bool OpenFileStreamFromCFURLRef(const platform::FileURL& url, const std::string& path, FStreamWrapper& stream,
                                bool readOnly);

// Splits behind the last "\", or else behind the last "/": the folder keeps it, so that folder and name together are the
// path. False, with the results untouched, if there is neither or nothing follows it.
bool SplitPath(const std::string& path, std::string& outFolder, std::string& outName);
