// Copies font files to a folder of the user.
#pragma once

#include <string>
#include <system_error>

namespace agent {

// Copies the file to the folder, under its own name or, if another file has that, as "name 2.otf" and so on. Never
// replaces a file and never leaves a partial one. A file with the same bytes counts as the copy. *copy receives the
// copy's path.
std::error_code ExportFile(const std::string& file, const std::string& folder, std::string* copy);

}  // namespace agent
