// Key and value files: a line "key = value" each, "#" begins a comment, keys are lowered, no sections and no quoting.
#pragma once

#include <map>
#include <string>

#include "ErrorCodes.h"
#include "GFileSystemSpec.h"

class GConfigurationFile {
 public:
  using Values = std::map<std::string, std::string>;

  // Replaces what was in `out`. An illegal line is reported to the log and skipped. Always 0.
  static TModuleErrorCode ParseString(const std::string& text, Values& out);
  // On failure `out` is untouched.
  static TModuleErrorCode ParseFile(const GFileSystemSpec& spec, Values& out);
  // Writes in key order with "\r\n" behind each line. After a failed write the file keeps what had been written.
  static TModuleErrorCode WriteFile(const GFileSystemSpec& spec, const Values& values);
};
