// The documents among the arguments of a program.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "docfonts/Report.h"

namespace with_fonts {

struct Document {
  std::string path;         // absolute
  docfonts::Report report;  // its file is the argument as given
};

// Returns the path that an argument names: of an existing file, or in a file:// address of this machine. Empty if it
// names none.
std::string PathOfArgument(const std::string& argument);

// Read one document; for a process of docfonts/ReaderPool.h. ReadKnown reads no more than the beginning of a file of an
// unknown kind; then the report's kind is empty.
docfonts::Report ReadOne(const std::string& path);
docfonts::Report ReadKnown(const std::string& path);

// Reads the arguments that name files, in processes that a damaged document cannot take down with this one. Returns
// those of a known kind and those that can't be read, each once; with isEachNamed also all others, whose reports have problems. The program must
// have no other threads.
std::vector<Document> ReadDocuments(const std::vector<std::string>& arguments, bool isEachNamed);

}  // namespace with_fonts
