#include "GConfigurationFile.h"

#include <sstream>

#include "FailedCheck.h"
#include "GFile.h"
#include "GStringUtils.h"

namespace {
constexpr const char* kLogIdentifier = "Miscellaneous";

void ParseLine(const std::string& line, GConfigurationFile::Values& out) {
  GLogger* logger = GLogger::GetSharedInstance();
  logger->LogDebug(kLogIdentifier, "Configuration line:\n%s", line.c_str());
  const std::string bare = GStringUtils::StripWhitespace(line.substr(0, line.find('#')));
  if (bare.empty()) return;
  const size_t equals = bare.find('=');
  const std::string key = GStringUtils::OSToLowerCase(GStringUtils::StripWhitespace(bare.substr(0, equals)));
  if (equals == std::string::npos || key.empty()) {
    logger->LogError(kLogIdentifier, "Ignoring illegal line in configuration:\n%s", line.c_str());
    return;
  }
  const std::string value = GStringUtils::StripWhitespace(bare.substr(equals + 1));
  logger->LogInfo(kLogIdentifier, "Configuration key = %s, value = %s", key.c_str(), value.c_str());
  out[key] = value;
}

}  // namespace

TModuleErrorCode GConfigurationFile::ParseString(const std::string& text, Values& out) {
  out.clear();
  std::vector<std::string> lines;
  GStringUtils::OSTokenizeString(text, "\r\n", lines);
  for (const std::string& line : lines) ParseLine(line, out);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GConfigurationFile::ParseFile(const GFileSystemSpec& confFileSpec, Values& out) {
  GFile confFile;
  std::string configString;
  // Keep the spelling of the expressions: the log shows them, and people search for them.
  // clang-format off
  RETURN_IF_ERROR(kLogIdentifier, confFile.Open(confFileSpec, GFile::eRead|GFile::eBinary));
  // clang-format on
  RETURN_IF_ERROR(kLogIdentifier, confFile.Read(configString));
  RETURN_IF_ERROR(kLogIdentifier, confFile.Close());
  return ParseString(configString, out);
}

TModuleErrorCode GConfigurationFile::WriteFile(const GFileSystemSpec& confFileSpec, const Values& values) {
  GFile confFile;
  // clang-format off
  RETURN_IF_ERROR(kLogIdentifier, confFile.Open(confFileSpec, GFile::eWrite|GFile::eBinary|GFile::eTruncate));
  // clang-format on
  for (const auto& [key, value] : values) {
    std::ostringstream ss;
    ss << key << "=" << value << "\r\n";
    RETURN_IF_ERROR(kLogIdentifier, confFile.Write(ss.str()));
  }
  // A file smaller than the buffer meets a full disk only here.
  RETURN_IF_ERROR(kLogIdentifier, confFile.Close());
  return CoreErrorCodes::kSuccess;
}
