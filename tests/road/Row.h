// A row of the table of the whole road: a document, the agent's library, preferences, and the expected outcome.
//
//   poster.psd ; liberation,urw ; CloseFontsOnDocClose=1 ; active DejaVuSans | now NimbusSans-Bold(otf) | missing - |
//   slug NimbusSans-Bold | back NimbusSans-Bold
//
// Documents are those of samples/. Libraries are the names of LibraryFolders, "-" an empty one. Preferences are set
// before the document is opened; "-" leaves those of a first start. "now" names the activated fonts with the kind of
// the file.
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

// Reads the rows of a file. Skips blank lines and lines that begin with "#". Throws std::runtime_error with the line.
std::vector<Row> ReadRows(const std::string& path);

// Runs the row with a new state folder and returns the outcome in the form of `expected`.
std::string RunRow(const Row& row);

// Returns the folders for the names of a library, which are separated by commas.
std::vector<std::string> LibraryFolders(const std::string& names);

}  // namespace road
