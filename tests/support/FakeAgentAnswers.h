// What the functions of the fake agent's table do.
#pragma once

#include <algorithm>
#include <cstring>
#include <span>

#include "platform/Value.h"
#include "support/FakeAgentState.h"
#include "support/FakePanelAnswers.h"

namespace fakes {

class AgentAnswers : PanelAnswers {
 public:
  using PanelAnswers::Answer;

  static const char* NameOf(AgentFunction function) {
    constexpr const char* kNames[] = {
#define FAKE_NAME(name, result, parameters) #name,
        PLUGIN_INTERFACE_FUNCTIONS(FAKE_NAME)
#undef FAKE_NAME
    };
    return kNames[static_cast<size_t>(function)];
  }
  // The library itself keeps the facade, the names of rights, and what it holds for the client.
  static constexpr bool NeedsAgent(AgentFunction function) {
    return function != AgentFunction::GetClientFontActivationStates &&
           function != AgentFunction::GetPluginFacadeInstance && function != AgentFunction::ResetPluginFacadeInstance &&
           function != AgentFunction::GetCanActivateAcrossWorkgroupsColumnID &&
           function != AgentFunction::GetExportFontsColumnID;
  }

  // Returns the record as the agent does: with the agent's activation state and without the plug-in's flags.
  static platform::Dictionary MakeRecord(const FakeFont& font) {
    platform::Dictionary record = platform::Dictionary::Create();
    const std::pair<const char*, std::string> entries[] = {
        {"PostScriptName", font.postScriptName},
        {"FontKind", font.kind},
        {"Foundry", font.foundry},
        {"Version", font.version},
        {"KerningChecksum", "0"},
        {"Checksum", font.checksum},
        {"Glyphsure_1.2_Checksum", font.checksum},
        {"OutlineFileSize", std::to_string(1000 + font.id)},
        {"OutlineFileName", font.postScriptName + ".otf"},
        {"Family", font.family},
        {"DisplayName", font.displayName.empty() ? font.postScriptName : font.displayName},
        {"AssignedFamilyID", std::to_string(font.familyID)},
        {"AssignedFamilyName", font.family},
        {"Path", "/fonts/" + std::to_string(font.id) + "/" + font.postScriptName + ".otf"},
        {"DatabaseID", std::to_string(font.id)},
        {"ActivationStatus", std::to_string(font.ownState != 0 ? font.ownState
                                            : font.isHeld      ? 1
                                                               : 0)},
        {"IsVault", "0"},
        {"IsSystem", font.IsSystem() ? "1" : "0"},
        {"IsLocal", font.isLocal ? "1" : "0"},
        {"WorkgroupID", std::to_string(font.workgroupID)},
        {"WorkgroupType", font.workgroupType},
    };
    for (const auto& [key, text] : entries) record.Set(key, text);
    return record;
  }

#define ANSWER(name, ...) Answer(std::integral_constant<AgentFunction, AgentFunction::name>, __VA_ARGS__)
  using Code = PluginInterface::TModuleErrorCode;
  using Facade = PluginInterface::FacadeHandle;
  using ValueRef = PluginInterface::ValueRef;

  static Facade Answer(std::integral_constant<AgentFunction, AgentFunction::GetPluginFacadeInstance>) {
    return Agent().facade;
  }
  static Code Answer(std::integral_constant<AgentFunction, AgentFunction::ResetPluginFacadeInstance>) {
    Agent().isGone = false;
    ++Agent().facade;
    return 0;
  }
  static Code ANSWER(InitAppInstance, Facade, uint32_t, uint32_t) { return Agent().initAppResult; }
  static Code ANSWER(InitThreadInstance, Facade) { return Agent().initThreadResult; }
  static Code ANSWER(RegisterForNotifications, Facade, PluginInterface::NotificationCallback callback) {
    Agent().callback = callback;
    return 0;
  }
  static Code ANSWER(UnregisterForNotifications, Facade, PluginInterface::NotificationCallback) {
    Agent().callback = nullptr;
    return 0;
  }
  static Code ANSWER(BeginLogging, Facade, const char* name) { return Write(std::string(name) + "\n"); }
  static Code ANSWER(Log, Facade, const char* text) { return Write(text); }

  static Code ANSWER(GetIsCoreAgentProcessRunning, Facade, int32_t* out) { return Put(out, Agent().isProcessRunning); }
  static Code ANSWER(GetAreSchemaVersionsInSync, Facade, int32_t* out) { return Put(out, Agent().areSchemasInSync); }
  static Code ANSWER(GetIsLoggedIn, Facade, int32_t* out) { return Put(out, Agent().isLoggedIn); }
  static Code ANSWER(GetIsOnline, Facade, int32_t* out) { return Put(out, Agent().isOnline); }
  static Code ANSWER(GetIsStandaloneMode, Facade, int32_t* out) { return Put(out, Agent().isStandalone); }
  static Code ANSWER(GetIsGoogleWebFontsEnabled, Facade, int32_t* out) { return Put(out, Agent().isWebFontsEnabled); }

  static Code ANSWER(GetFontsByPostscriptName, Facade, const char* name, const uint32_t* workgroups, uint32_t count,
                     uint32_t* out, uint32_t capacity, uint32_t* outCount) {
    return Find(&FakeFont::postScriptName, name, {workgroups, count}, {out, capacity}, outCount);
  }
  static Code ANSWER(GetFontsByFamilyName, Facade, const char* name, const uint32_t* workgroups, uint32_t count,
                     uint32_t* out, uint32_t capacity, uint32_t* outCount) {
    return Find(&FakeFont::family, name, {workgroups, count}, {out, capacity}, outCount);
  }
  static Code ANSWER(GetFontInfoByID, Facade, const uint32_t* workgroups, uint32_t count, ValueRef request,
                     PluginInterface::FontRecordFields* fields, ValueRef* out) {
    Note(AgentFunction::GetFontInfoByID, {workgroups, workgroups + count});
    const platform::Dictionary asked(platform::Value::Retain(request));
    const auto found = Agent().fonts.find(static_cast<uint32_t>(std::stoul(asked.GetString("DatabaseID").Text())));
    if (found == Agent().fonts.end()) return agent_protocol::kNotFound;
    fields->nDatabaseID = found->first;
    *out = MakeRecord(found->second).Release();
    return 0;
  }
  static Code ANSWER(GetFontIsActivated, Facade, uint32_t count, const uint32_t* ids, uint32_t* out) {
    return GetFlags(count, ids, out, [](const FakeFont& font) { return font.IsActive(); });
  }
  static Code ANSWER(GetClientFontActivationStates, uint32_t count, const uint32_t* ids, uint32_t* out) {
    return GetFlags(count, ids, out, [](const FakeFont& font) { return font.isHeld; });
  }
  static Code ANSWER(GetFontConflicts, Facade, uint32_t count, const uint32_t* ids, uint32_t* out) {
    for (uint32_t i = 0; i < count; ++i) out[i] = Agent().conflicts[ids[i]];
    return 0;
  }
  static Code ANSWER(FindFontsInSameFamilyForActivation, ValueRef record, const uint32_t* workgroups, uint32_t count,
                     ValueRef out) {
    Note(AgentFunction::FindFontsInSameFamilyForActivation, {workgroups, workgroups + count});
    const platform::Dictionary font(platform::Value::Retain(record));
    platform::Array members(platform::Value::Retain(out));
    for (const auto& [id, other] : Agent().fonts) {
      if (std::to_string(other.familyID) == font.GetString("AssignedFamilyID").View())
        members.Append(MakeRecord(other));
    }
    return 0;
  }

  static Code ANSWER(ActivateFonts, Facade, uint32_t count, const uint32_t* ids, uint32_t zero, uint32_t kind,
                     uint32_t one, uint32_t alsoOne, uint32_t failedCapacity, uint32_t refusedCapacity,
                     uint32_t* failed, uint32_t* refused, uint32_t* failedCount, uint32_t* refusedCount) {
    Note(AgentFunction::ActivateFonts, {zero, kind, one, alsoOne, failedCapacity, refusedCapacity});
    *failedCount = *refusedCount = 0;
    for (const uint32_t* id = ids; id != ids + count; ++id) {
      if (*id == 0) continue;  // no font; a panel sends it for a duplicate
      FakeFont& font = Agent().Font(*id);
      if (font.isRefused) {
        refused[(*refusedCount)++] = *id;
      } else if (font.fails) {
        failed[(*failedCount)++] = *id;
      } else {
        font.isHeld = true;
      }
    }
    return 0;
  }
  static Code ANSWER(PreviewActivateFonts, Facade, uint32_t count, const uint32_t* ids, uint32_t) {
    uint32_t activated = 0;
    for (const uint32_t* id = ids; id != ids + count; ++id) {
      FakeFont& font = Agent().Font(*id);
      font.isHeld = font.isHeld || !font.fails;
      activated += font.isHeld;
    }
    return count > 0 && activated == 0 ? agent_protocol::kNotSupported : 0;
  }
  static Code ANSWER(DeactivateFonts, Facade, uint32_t count, const uint32_t* ids, uint32_t) {
    for (const uint32_t* id = ids; id != ids + count; ++id) {
      FakeFont& font = Agent().Font(*id);
      if (!font.isHeld) {
        Agent().wronglyDeactivated.push_back(*id);
        font.ownState = 0;
      }
      font.isHeld = false;
    }
    return 0;
  }

  static Code ANSWER(GetAllWorkgroupsForUser, Facade, ValueRef* out, bool includeSpecial, bool) {
    platform::Array list = platform::Array::Create();
    for (const FakeWorkgroup& workgroup : Agent().workgroups) {
      if (workgroup.IsSpecial() && !includeSpecial) continue;
      platform::Dictionary entry = platform::Dictionary::Create();
      entry.Set("WorkgroupID", std::to_string(workgroup.id));
      entry.Set("WorkgroupName", workgroup.name);
      entry.Set("WorkgroupType", workgroup.type);
      list.Append(entry);
    }
    *out = list.Release();
    return 0;
  }
  static uint32_t ANSWER(GetCanActivateAcrossWorkgroupsColumnID, char* buffer, uint32_t size) {
    std::strncpy(buffer, "across", size);
    return 0;
  }
  static uint32_t ANSWER(GetExportFontsColumnID, char* buffer, uint32_t size) {
    std::strncpy(buffer, "export", size);
    return 0;
  }
  static Code ANSWER(GetPermission, Facade, uint16_t flag, const char* right, uint32_t workgroup, int32_t* out) {
    Note(AgentFunction::GetPermission, {flag, workgroup});
    return Put(out, std::strcmp(right, "across") == 0 ? Agent().mayUseAllWorkgroups : Agent().mayExport);
  }
  static Code ANSWER(CanExportFonts, Facade, uint32_t count, const uint32_t* ids, int32_t* out) {
    Note(AgentFunction::CanExportFonts, {ids, ids + count});
    return Put(out, Agent().mayExport);
  }
  static Code ANSWER(ExportFonts, Facade, uint32_t count, const uint32_t* ids, const char*, uint32_t, uint32_t) {
    Agent().exported.assign(ids, ids + count);
    return 0;
  }
  static Code ANSWER(CreateTopLevelSet, Facade, uint32_t* setID, uint32_t workgroup, const char* name, uint32_t zero,
                     uint32_t alsoZero, uint32_t count, const uint32_t* ids) {
    Note(AgentFunction::CreateTopLevelSet, {workgroup, zero, alsoZero});
    for (const uint32_t id : std::span(ids, count)) Agent().arguments[AgentFunction::CreateTopLevelSet].push_back(id);
    Agent().sets.emplace_back(name);
    *setID = static_cast<uint32_t>(Agent().sets.size());
    return 0;
  }
#undef ANSWER

 private:
  static FakeAgent& Agent() { return FakeAgent::Current(); }

  static void Note(AgentFunction function, std::vector<uint32_t> arguments) {
    Agent().arguments[function] = std::move(arguments);
  }
  static Code Put(int32_t* out, bool value) {
    *out = value;
    return 0;
  }
  static Code Write(const std::string& text) {
    Agent().log += text;
    return 0;
  }

  static Code Find(std::string FakeFont::*member, const char* name, std::span<const uint32_t> workgroups,
                   std::span<uint32_t> out, uint32_t* outCount) {
    *outCount = 0;
    for (const auto& [id, font] : Agent().fonts) {
      const bool isInWorkgroup = std::any_of(workgroups.begin(), workgroups.end(), [&font = font](uint32_t workgroup) {
        return workgroup == 0 || workgroup == font.workgroupID;
      });
      if (font.*member != name || !isInWorkgroup) continue;
      if (*outCount < out.size()) out[*outCount] = id;
      ++*outCount;
    }
    return 0;
  }

  template <class Predicate>
  static Code GetFlags(uint32_t count, const uint32_t* ids, uint32_t* out, Predicate predicate) {
    for (uint32_t i = 0; i < count; ++i) {
      const auto found = Agent().fonts.find(ids[i]);
      out[i] = found != Agent().fonts.end() && predicate(found->second);
    }
    return 0;
  }
};

}  // namespace fakes
