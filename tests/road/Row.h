// A row of the table of the whole road: a document, the library that the agent has, preferences, and what comes of it.
//
//   poster.psd ; liberation,urw ; CloseFontsOnDocClose=1 ; active DejaVuSans | now NimbusSans-Bold(otf) | missing - |
//   slug NimbusSans-Bold | back NimbusSans-Bold
//
// Documents are those of samples/. Libraries are the names of LibraryFolders, "-" an empty one. Preferences are set before
// the document is opened; "-" leaves those of a first start. "now" names the activated fonts with the kind of the file.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace road {

struct Row {
  std::string document;
  std::string library;
  std::string preferences;
  std::string expected;
  std::string Text() const;
};
inline void PrintTo(const Row& row, std::ostream* stream) { *stream << row.Text(); }

// Reads the rows of a file; blank lines and lines that begin with "#" are none. Throws std::runtime_error with the line.
std::vector<Row> ReadRows(const std::string& path);

// Does what the row says with a fresh state folder, and gives what came of it in the form of `expected`.
std::string RunRow(const Row& row);

// The folders of a library's names, parted by commas.
std::vector<std::string> LibraryFolders(const std::string& names);

}  // namespace road
