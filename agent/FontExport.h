// Copies of font files in a folder of the user's.
#pragma once

#include <string>
#include <system_error>

namespace agent {

// Copies the file into the folder, under its own name or, if another file has that, "name 2.otf" and so on; no file is
// ever written over, and none is there in part. A file that already holds the same bytes counts as the copy. The copy's
// path in *copy.
std::error_code ExportFile(const std::string& file, const std::string& folder, std::string* copy);

}  // namespace agent
