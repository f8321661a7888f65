#include "nexctl/PreviewInbox.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Base64.h"

namespace nexctl {

namespace {

constexpr std::chrono::seconds kPatience(5);

struct Size {
  uint32_t text, width, height;  // in pixels
};

// A block is as wide as a character, so the picture may not be wider than the terminal.
Size SizeFor(PictureForm form) {
  if (form != PictureForm::kBlocks) return {32, 800, 64};
  constexpr uint32_t kUsualColumns = 80;
  winsize size{};
  const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return {16, std::clamp(isKnown ? uint32_t{size.ws_col} : kUsualColumns, 20u, 400u), 26};
}

}  // namespace

void PreviewInbox::Take(const Json& notification) {
  if (notification.value("notify", 0u) != PluginInterface::kPreviewPNGsRendered) return;
  const Json payload = notification.value("payload", Json::object());
  const std::lock_guard lock(mutex_);
  for (const auto& [id, picture] : payload.items()) {
    const auto bytes = platform::DecodeBase64(picture.value("pngBytes", ""));
    pictures_[static_cast<uint32_t>(std::strtoul(id.c_str(), nullptr, 10))] = bytes.value_or("");
  }
  came_.notify_all();
}

std::optional<Picture> PreviewInbox::Draw(Session& session, uint32_t fontID, PictureForm form) {
  const Size size = SizeFor(form);
  session.Ask<calls::RenderFontNamePreviewPNGs>({{fontID}, {}, size.text, size.width, size.height});
  std::unique_lock lock(mutex_);
  came_.wait_for(lock, kPatience, [&] { return pictures_.contains(fontID); });
  const auto found = pictures_.find(fontID);
  return found == pictures_.end() ? std::nullopt : ReadPNG(found->second);
}

}  // namespace nexctl
