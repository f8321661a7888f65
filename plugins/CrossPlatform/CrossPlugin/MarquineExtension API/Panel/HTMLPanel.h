// A panel that is an extension of the host. Messages are events of the host's service, one event for each message.
//
// The service delivers events on the main thread. An event is lost if nobody listens. Previews are one message with the
// URLs of their files.
#pragma once

#include <string>
#include <vector>

#include "Panel/MarquinePanel.h"
#include "Panel/SDKPlugPlug.h"

class HTMLPanel : public MarquinePanel {
 public:
  explicit HTMLPanel(SDKPlugPlug* plugPlug) : mPlugPlug(plugPlug) {}  // not owned
  ~HTMLPanel() override;

  // Starts to listen to the panel. kNotInitialized if the service refuses.
  virtual TModuleErrorCode RegisterHandler();
  // Adds a preview to the message that SendFontImages forms.
  virtual void AddFontURL(unsigned int fontID, const std::string& url, const std::string& url2x);

  TModuleErrorCode OpenSocket() override { return CoreErrorCodes::kSuccess; }
  TModuleErrorCode SelectSocket(bool) override { return CoreErrorCodes::kSuccess; }
  unsigned int GetSocketPort() override { return 0; }
  TModuleErrorCode SendMessage(const std::string& text) override;  // kNullPointer without a service
  TModuleErrorCode SendFontImages(const platform::Dictionary& fontPNGs) override;

 private:
  struct FontURL {
    unsigned int fontID;
    std::string url, url2x;  // file URLs, not percent-encoded; empty without a file
  };

  SDKPlugPlug* mPlugPlug;
  bool mIsRegistered = false;
  std::vector<FontURL> mFontURLs;  // of the message that is being formed
};
