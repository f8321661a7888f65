// The file of a parser: a standard file stream in binary mode, and file operations for all parsers. One thread at a
// time.
#pragma once

#include <fstream>
#include <string>

#include "platform/FileURL.h"

class FStreamWrapper {
 public:
  // The operations of the stream, with the same meaning.
  //
  // Refuses anything but a regular file, because opening a pipe could wait forever. An open stream stays open and gets
  // its fail bit.
  void open(const char* path, std::ios_base::openmode mode);
  // The path that was opened last; empty before the first success.
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

  // In bytes; -1 in a failed state. Does not change the read position.
  std::streamoff GetStreamLength();
  // Appends zero bytes to a file that is shorter than `length` bytes. Does not change the write position. A failure
  // sets the stream's fail bit.
  void LengthenFileStream(std::streamoff length);

 private:
  std::fstream mStream;
  std::string mPath;
};

// Reads `size` bytes. Returns 0, or -1 with `size` set to the bytes read and the end-of-file state cleared.
int ReadStream(FStreamWrapper& stream, std::streamsize& size, char* buffer);
// Writes `size` bytes. Returns 0 if the write position moved by at least that, otherwise -1 with `size` set to how far
// it moved.
int WriteStream(FStreamWrapper& stream, std::streamsize& size, const char* buffer);

// Opens the file for reading or, without readOnly, for reading and writing. Uses the URL; the path, as UTF-8, replaces
// it if necessary and appears in the trace. Returns false, with a trace line, if the file cannot be opened.
bool OpenFileStreamFromCFURLRef(const platform::FileURL& url, const std::string& path, FStreamWrapper& stream,
                                bool readOnly);

// Splits after the last "\", or else after the last "/". The folder includes it, so that folder and name together are
// the path. Returns false and changes nothing if there is neither, or if nothing follows it.
bool SplitPath(const std::string& path, std::string& outFolder, std::string& outName);
