// Previews: the call that asks for them and the event that delivers them.
#include <set>

#include "agent/fonts/FontRecord.h"
#include "agent/server/Agent.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Base64.h"

namespace agent {

namespace {

constexpr size_t kMostUnread = 4u << 20;  // bytes

// Leaves out fonts that do not exist and those in `done`.
std::vector<PreviewFont> FontsOf(const FontTable& table, const Numbers& ids, std::set<uint32_t>& done) {
  std::vector<PreviewFont> fonts;
  for (const uint32_t id : ids) {
    const Font* font = table.Find(id);
    if (!font || !done.insert(id).second) continue;
    fonts.push_back({id, font->path, static_cast<uint32_t>(font->face.faceIndex), font->face.glyphsureChecksum,
                     DisplayName(font->face)});
  }
  return fonts;
}

Json PayloadOf(const Preview& preview) {
  Json payload = Json::object();
  if (!preview.files.png.empty()) payload["pngBytes"] = platform::EncodeBase64(preview.files.png);
  if (!preview.files.path.empty()) payload["pngFilename"] = preview.files.path;
  if (!preview.files.path2x.empty()) payload["2xPNGFilename"] = preview.files.path2x;
  return payload;
}

}  // namespace

Answer<calls::RenderFontNamePreviewPNGs> Agent::Serve(ClientID client,
                                                      const calls::RenderFontNamePreviewPNGs::Arguments& arguments) {
  std::set<uint32_t> done;
  const PreviewSize size{arguments.textSize, arguments.width, arguments.height};
  if (!size.IsGood()) return kInvalidParam;
  const auto urgent = FontsOf(library_->Table(), arguments.highPriorityFontIDs, done);
  previews_.Render(client, FontsOf(library_->Table(), arguments.fontIDs, done), size, false);
  previews_.Render(client, urgent, size, true);
  return calls::Nothing();
}

PreviewEvents Agent::MakePreviewEvents() {
  PreviewEvents events;
  events.rendered = [this](ClientID client, const std::vector<Preview>& previews) {
    Json payload = Json::object();
    for (const Preview& preview : previews) payload[std::to_string(preview.fontID)] = PayloadOf(preview);
    server_.Send(client, ToText({{"notify", PluginInterface::kPreviewPNGsRendered}, {"payload", payload}}));
  };
  events.canTake = [this](ClientID client) { return server_.Unsent(client) < kMostUnread; };
  events.report = [this](const std::string& line) { log_.Write(line); };
  return events;
}

}  // namespace agent
