// Waits for the pictures of fonts that the agent draws for this program.
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "nexctl/Picture.h"
#include "nexctl/Session.h"

namespace nexctl {

// Thread-safe.
class PreviewInbox {
 public:
  // For the session's notifications.
  void Take(const Json& notification);
  // Has the name of a font drawn. Nothing if it cannot be drawn, or takes too long.
  std::optional<Picture> Draw(Session& session, uint32_t fontID, PictureForm form);

 private:
  std::mutex mutex_;
  std::condition_variable came_;
  std::map<uint32_t, std::string> pictures_;  // PNG by font ID
};

}  // namespace nexctl
