// What the functions of the fake agent's table do that serve a font panel. Each records its call as a line with all its
// arguments in FakeAgent::asked; a null array is "null".
#pragma once

#include <string>
#include <type_traits>

#include "platform/Value.h"
#include "support/FakeAgentState.h"

namespace fakes {

class PanelAnswers {
 public:
  using Code = PluginInterface::TModuleErrorCode;
  using Facade = PluginInterface::FacadeHandle;
  using ValueRef = PluginInterface::ValueRef;

#define ANSWER(name, ...) Answer(std::integral_constant<AgentFunction, AgentFunction::name>, __VA_ARGS__)
  static Code ANSWER(GetIsReplicationRunning, Facade, int32_t* out) { return *out = Agent().isReplicating, 0; }
  static Code ANSWER(GetCurrentReplicationMode, Facade, int32_t* out) { return *out = Agent().replicationMode, 0; }
  static Code ANSWER(SetGoogleWebFontsEnabled, Facade, int32_t enabled) { return Ask("web fonts", enabled); }
  static int32_t ANSWER(CanAccessGoogleFonts, Facade) { return 1; }
  static Code ANSWER(TrackFontPanelClick, Facade, uint32_t fontID, const char* version) {
    return Ask("click", fontID, version);
  }
  static Code ANSWER(RenderFontNamePreviewPNGs, Facade, uint32_t highCount, const uint32_t* high, uint32_t count,
                     const uint32_t* ids, uint32_t list, uint32_t size, uint32_t width, uint32_t height, uint32_t one) {
    return Ask("render", IDs(highCount, high), IDs(count, ids), list, size, width, height, one);
  }

  static Code ANSWER(RenameSmartList, Facade, uint32_t id, const char* name) { return Ask("rename", id, name); }
  static Code ANSWER(DeleteSmartList, Facade, uint32_t id) { return Ask("delete", id); }
  static Code ANSWER(CreateSmartList, Facade, const char* name, uint32_t n1, const uint32_t* ids1, uint32_t n2,
                     const uint32_t* ids2, uint32_t n3, const uint32_t* ids3, uint32_t* outID) {
    *outID = 12;
    return Ask("create", name, IDs(n1, ids1), IDs(n2, ids2), IDs(n3, ids3));
  }
  static Code ANSWER(SetSmartListQuery, Facade, uint32_t id, uint32_t n1, const uint32_t* ids1, uint32_t n2,
                     const uint32_t* ids2, uint32_t n3, const uint32_t* ids3) {
    return Ask("set", id, IDs(n1, ids1), IDs(n2, ids2), IDs(n3, ids3));
  }
  static Code ANSWER(QueryForSmartListFonts, Facade, uint32_t n1, const uint32_t* ids1, uint32_t n2,
                     const uint32_t* ids2, uint32_t n3, const uint32_t* ids3, ValueRef results) {
    for (const auto& [id, font] : Agent().fonts) Append(results, platform::Number::FromInteger(id));
    return Ask("query", IDs(n1, ids1), IDs(n2, ids2), IDs(n3, ids3));
  }
  static Code ANSWER(GetAllSmartLists, Facade, ValueRef results) {
    for (const auto& [id, name] : Agent().smartLists) Append(results, SmartList(id, name));
    return 0;
  }
  static Code ANSWER(GetSmartList, Facade, uint32_t id, ValueRef* out) {
    if (!Agent().smartLists.contains(id)) return agent_protocol::kNotFound;
    *out = SmartList(id, Agent().smartLists[id]).Release();
    return 0;
  }
  static Code ANSWER(GetPanelSmartListTree, Facade, uint32_t, ValueRef* out) {
    *out = platform::String::FromUTF8(Agent().listTree).Release();
    return 0;
  }
  static Code ANSWER(GetSmartListFonts, Facade, uint32_t, ValueRef results) {
    for (const platform::Dictionary& font : Agent().listedFonts) Append(results, font);
    return 0;
  }
#undef ANSWER

 private:
  static FakeAgent& Agent() { return FakeAgent::Current(); }
  static void Append(ValueRef results, const platform::Value& entry) {
    platform::Array(platform::Value::Retain(results)).Append(entry);
  }
  static platform::Dictionary SmartList(uint32_t id, const std::string& name) {
    platform::Array workgroups = platform::Array::Create();
    workgroups.Append(platform::Number::FromInteger(1));
    platform::Dictionary list = platform::Dictionary::Create();
    list.Set("smartListID", platform::Number::FromInteger(id));
    list.Set("smartListName", name);
    list.Set("workgroupIDs", workgroups);
    return list;
  }

  static std::string IDs(uint32_t count, const uint32_t* ids) {
    std::string text = std::to_string(count) + (ids ? ":" : ":null");
    for (uint32_t i = 0; ids && i < count; ++i) text += (i > 0 ? "," : "") + std::to_string(ids[i]);
    return text;
  }
  static std::string Text(const std::string& text) { return text; }
  template <class Number>
  requires std::is_integral_v<Number>
  static std::string Text(Number number) { return std::to_string(number); }
  template <class... Arguments>
  static Code Ask(std::string line, const Arguments&... arguments) {
    ((line += " " + Text(arguments)), ...);
    Agent().asked.push_back(line);
    return 0;
  }
};

}  // namespace fakes
