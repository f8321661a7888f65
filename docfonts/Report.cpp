#include "docfonts/Report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/PlainText.h"

namespace docfonts {

using Json = nlohmann::ordered_json;
using platform::OneLine;

namespace {

Json ToJson(const FontLook& look) {
  Json object = Json::object();
  if (look.design != platform::FontDesign::kUnknown) object["design"] = WordOf(look.design);
  if (look.isMonospaced) object["monospaced"] = *look.isMonospaced;
  if (look.isItalic) object["italic"] = *look.isItalic;
  if (look.weight != 0) object["weight"] = look.weight;
  if (look.letterWidths != FontLook::LetterWidths{}) object["letterWidths"] = look.letterWidths;
  return object;
}

FontLook LookFromJson(const Json& object) {
  FontLook look;
  look.design = platform::DesignOfWord(object.value("design", ""));
  if (object.contains("monospaced")) look.isMonospaced = object["monospaced"].get<bool>();
  if (object.contains("italic")) look.isItalic = object["italic"].get<bool>();
  look.weight = object.value("weight", 0);
  look.letterWidths = object.value("letterWidths", FontLook::LetterWidths{});
  return look;
}

}  // namespace

Json ToJson(const Report& report) {
  Json object = {{"file", report.file}};
  if (!report.kind.empty()) object["kind"] = report.kind;
  object["fonts"] = Json::array();
  for (const Font& font : report.fonts) {
    Json entry = {{"name", font.name}, {"found", font.found}};
    if (font.style) {
      entry["family"] = font.style->family;
      entry["weight"] = font.style->weight;
      entry["italic"] = font.style->isItalic;
      entry["stretch"] = font.style->stretch;
    }
    if (font.embedded) entry["embedded"] = *font.embedded;
    if (!font.subset.empty()) entry["subset"] = font.subset;
    if (!font.type.empty()) entry["type"] = font.type;
    if (font.look != FontLook()) entry["look"] = ToJson(font.look);
    if (!font.slug.empty()) entry["slug"] = font.slug;
    entry["active"] = font.active;
    if (font.file) entry["resolved"] = font.file->empty() ? Json() : Json(*font.file);
    object["fonts"].push_back(std::move(entry));
  }
  if (!report.problems.empty()) object["problems"] = report.problems;
  return object;
}

Report FromJson(const Json& object) {
  Report report;
  report.file = object.at("file");
  report.kind = object.value("kind", "");
  report.problems = object.value("problems", std::vector<std::string>());
  for (const Json& entry : object.at("fonts")) {
    Font font;
    font.name = entry.at("name");
    font.found = entry.at("found").get<std::vector<std::string>>();
    if (entry.contains("family")) {
      font.style = {entry["family"], entry.at("weight"), entry.at("italic"), entry.at("stretch")};
    }
    if (entry.contains("embedded")) font.embedded = entry["embedded"].get<bool>();
    font.subset = entry.value("subset", "");
    font.type = entry.value("type", "");
    if (entry.contains("look")) font.look = LookFromJson(entry["look"]);
    font.slug = entry.value("slug", std::map<std::string, std::string>());
    report.fonts.push_back(std::move(font));
  }
  return report;
}

namespace {

// A table row for one font.
struct Row {
  std::string name, state, type, embedded, found;
};

Row RowOf(const Font& font) {
  Row row = {OneLine(font.name), font.active ? "active" : "missing", OneLine(font.type), "", ""};
  if (font.embedded) row.embedded = *font.embedded ? "embedded" : "not embedded";
  if (!font.subset.empty()) row.embedded += (row.embedded.empty() ? "subset " : ", subset ") + OneLine(font.subset);
  for (const std::string& reader : font.found) row.found += (row.found.empty() ? "" : " ") + reader;
  return row;
}

std::string Padded(const std::string& text, size_t width) {
  const size_t length = platform::CountCharacters(text);
  return text + std::string(width - std::min(width, length) + 2, ' ');
}

std::string SlugText(const Font& font) {
  std::string text;
  for (const auto& [key, value] : font.slug) {
    if (value != font.name) text += (text.empty() ? "" : ", ") + OneLine(key) + " " + OneLine(value);
  }
  return text;
}

std::string Coloured(const std::string& text, const char* code, const TextStyle& style) {
  return style.hasColours ? std::string("\033[") + code + "m" + text + "\033[0m" : text;
}

constexpr const char* kBold = "1";
constexpr const char* kRed = "31";

}  // namespace

std::string ToText(const Report& report, const TextStyle& style) {
  std::string text = Coloured(OneLine(report.file), kBold, style);
  if (!report.kind.empty()) text += "  " + report.kind;
  text += "\n";
  if (report.fonts.empty()) text += "  no fonts\n";
  std::vector<Row> rows;
  size_t name = 0, state = 0, type = 0, embedded = 0;
  for (const Font& font : report.fonts) {
    const Row& row = rows.emplace_back(RowOf(font));
    name = std::max(name, platform::CountCharacters(row.name));
    state = std::max(state, row.state.size());
    type = std::max(type, platform::CountCharacters(row.type));
    embedded = std::max(embedded, row.embedded.size());
  }
  for (size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    const Font& font = report.fonts[i];
    const std::string shownState = Padded(row.state, state);
    text += "  " + Padded(row.name, name) + (font.active ? shownState : Coloured(shownState, kRed, style));
    if (type > 0) text += Padded(row.type, type);
    if (embedded > 0) text += Padded(row.embedded, embedded);
    text += row.found + "\n";
    if (const std::string slug = SlugText(font); !slug.empty()) text += "      identified as " + slug + "\n";
    if (!style.isResolved || !font.file) continue;
    text +=
        "      chosen: " + (font.file->empty() ? std::string("no file of the library") : OneLine(*font.file)) + "\n";
  }
  return text;
}

}  // namespace docfonts
