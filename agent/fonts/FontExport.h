// Copies font files to a folder of the user.
#pragma once

#include <string>
#include <system_error>

namespace agent {

// Copies the file to the folder, which must exist, under its own name or, if another file has that, as "name 2.otf" up
// to "name 1000.otf". Never replaces a file and never leaves a partial one. If a file with one of these names has the
// same bytes, it counts as the copy. *copy receives the copy's path; after an error it has no meaning. The error is
// that of the system, or std::errc::file_exists if all names are taken.
std::error_code ExportFile(const std::string& file, const std::string& folder, std::string* copy);

}  // namespace agent
