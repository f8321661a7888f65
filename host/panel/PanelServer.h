// The web server of the font panel's page, on the loopback address only. A page gets the panel's own files, the files that
// ReadableFiles allows, and a WebSocket with the events of the extension service: text messages
// {"type": TYPE, "data": TEXT} in both directions.
//
// There is one page: a newer one takes the place of an older one, which is told so with the close code 4001. The messages
// name no receiver, and two pages would take each other's answers.
//
// The address has a random token, without which nobody gets anything. The server has a thread of its own and never makes
// the run loop wait: a page that does not read, does not answer or sends too much is disconnected. Its limits: 64
// connections, 16 KiB for the head of a request, 1 MiB for a message from a page, 16 MiB that a page has not
// read, 30 seconds of silence.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace panel {

struct ServerSetup {
  std::string pageFolder;     // its files are the page; read once, at the start
  std::string previewFolder;  // absolute; see ReadableFiles
  // Both are called on the main run loop's thread. Events of pages, in the order of each page:
  std::function<void(const std::string& type, const std::string& data)> onEvent;
  // A line about a request or page that was refused, and why. At most 1000 lines.
  std::function<void(const std::string& line)> log;
};

// Main thread only.
class PanelServer {
 public:
  // Throws std::exception if the page can't be read or no port can be had.
  explicit PanelServer(ServerSetup setup);
  ~PanelServer();  // disconnects everyone; no callback runs any more
  PanelServer(const PanelServer&) = delete;
  PanelServer& operator=(const PanelServer&) = delete;

  std::string Address() const;  // "http://127.0.0.1:PORT/TOKEN/"

  // Sends an event to the page, if one is connected. Does not wait.
  void Send(const std::string& type, const std::string& data);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace panel
