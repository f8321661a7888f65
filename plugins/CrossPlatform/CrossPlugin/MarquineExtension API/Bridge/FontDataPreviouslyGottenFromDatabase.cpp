#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"

#include <map>
#include <set>
#include <unordered_map>

#include "Identification/FontKeys.h"
#include "Services/DiagnosticLog.h"
#include "platform/TextEncoding.h"

using namespace GlyphsureSupport;

namespace {

struct Cache {
  std::map<uint32_t, FontOrSetInfoRec> idToInfoRec;
  // The IDs by PostScript name, so that a look-up by name need not search all records.
  std::unordered_map<std::string, std::set<uint32_t>> idsByName;
};

Cache& GetCache() {
  static Cache sCache;
  return sCache;
}

const char* Text(const FontOrSetInfoRec& record, std::string_view key) {
  return record.fontInfo.GetString(key).CString();
}

}  // namespace

void FontDataPreviouslyGottenFromDatabase::Add(uint32_t fontID, const FontOrSetInfoRec& record) {
  Cache& cache = GetCache();
  // Keep the first record of an ID.
  if (!cache.idToInfoRec.emplace(fontID, record).second) return;
  const platform::String name = record.fontInfo.GetString(kGS_PostScriptNameKey);
  if (name) cache.idsByName[name.Text()].insert(fontID);
}

void FontDataPreviouslyGottenFromDatabase::SetFontActivationState(uint32_t fontID, bool isActive) {
  Cache& cache = GetCache();
  const auto found = cache.idToInfoRec.find(fontID);
  if (found == cache.idToInfoRec.end()) {
    OutputIndentedAndFormattedString(0,
                                     "%s() failing to record transition to activation state %d because font with "
                                     "databaseID %d not in FontDataPreviouslyGottenFromDatabase.",
                                     __func__, isActive, fontID);
    return;
  }
  FontOrSetInfoRec& record = found->second;
  if (!isActive) {
    record.activationState = kStateInactive;
    return;
  }
  if (record.activationState == kStateActive || record.activationState == kStateTemporarilyActive) return;
  OutputIndentedAndFormattedString(
      0,
      "Setting activation state to %d in FontDataPreviouslyGottenFromDatabase::%s(%d (%s, version %s), isActive=%d) with "
      "Glyphsure_ActivationStatusKey=%s, Glyphsure_IsActiveKey=%s",
      kStateTemporarilyActive, __func__, fontID, Text(record, kGS_PostScriptNameKey), Text(record, kGS_VersionKey),
      isActive, Text(record, kGS_ActivationStateKey), Text(record, kGS_IsActiveKey));
  record.activationState = kStateTemporarilyActive;
  const platform::String name = record.fontInfo.GetString(kGS_PostScriptNameKey);
  if (!name) return;
  // Only one font of a PostScript name can be active at a time.
  for (const uint32_t other : cache.idsByName[name.Text()]) {
    if (other != fontID) cache.idToInfoRec[other].activationState = kStateInactive;
  }
}

bool FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont(const std::string& postScriptName,
                                                                                  platform::Dictionary& dictionary,
                                                                                  uint32_t& fontID) {
  const Cache& cache = GetCache();
  const auto ids = cache.idsByName.find(postScriptName);
  if (ids == cache.idsByName.end()) return false;
  for (const uint32_t id : ids->second) {
    const FontOrSetInfoRec& record = cache.idToInfoRec.at(id);
    if (record.activationState == kStateInactive) continue;
    const platform::String status = record.fontInfo.GetString(kGS_ActivationStateKey);
    if (!status) continue;
    // A font that was inactive when it was fetched keeps that status here, so callers ask the agent.
    const int state = platform::IntegerOfText(status.View());
    if (state != kStateTemporarilyActive && state != kStateActive) continue;
    OutputIndentedAndFormattedString(0,
                                     "Returning TRUE from FontDataPreviouslyGottenFromDatabase::%s('%s', ...) with "
                                     "version %s, Glyphsure_ActivationStatusKey=%s, Glyphsure_IsActiveKey=%s",
                                     __func__, postScriptName.c_str(), Text(record, kGS_VersionKey), status.CString(),
                                     Text(record, kGS_IsActiveKey));
    dictionary = record.fontInfo.Copy();
    fontID = id;
    return true;
  }
  return false;
}

void FontDataPreviouslyGottenFromDatabase::DeleteAll() {
  Cache& cache = GetCache();
  for (const auto& [id, record] : cache.idToInfoRec) {
    if (!record.fontInfo) continue;
    OutputIndentedAndFormattedString(0, "FontDataPreviouslyGottenFromDatabase::%s() removing %d ('%s') from cache.",
                                     __func__, id, Text(record, kGS_PostScriptNameKey));
  }
  cache = Cache();
}
