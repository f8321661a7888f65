// Files with one "key = value" per line. "#" begins a comment; keys are lowered; there are no sections and no quoting.
#pragma once

#include <map>
#include <string>

#include "ErrorCodes.h"
#include "GFileSystemSpec.h"

class GConfigurationFile {
 public:
  using Values = std::map<std::string, std::string>;

  // Replaces the contents of `out`. Logs and skips an illegal line. Always returns 0.
  static TModuleErrorCode ParseString(const std::string& text, Values& out);
  // On failure `out` is unchanged.
  static TModuleErrorCode ParseFile(const GFileSystemSpec& spec, Values& out);
  // Writes in the order of keys, with "\r\n" after each line. A failed write leaves a partial file.
  static TModuleErrorCode WriteFile(const GFileSystemSpec& spec, const Values& values);
};
