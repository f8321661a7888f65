// The document host: owns documents and windows, loads the plug-in bundle, offers it the suites of
// host/include/HostSuites.h, sends it the notifications and runs the loop in between. Main thread only.
//
// Every operation on documents returns an empty text on success, otherwise one line that says what went wrong and names
// the file. A failed operation leaves documents and files unchanged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace host {

struct DocumentInfo {
  int32_t id = 0;
  std::string path;   // absolute; empty while untitled
  std::string title;  // title of its window: the file's name, or "Untitled-1" and so on
  bool isDirty = false;
  std::vector<std::string> fontNames;  // distinct PostScript names that the document names, in the order found
};

struct WindowInfo {
  std::string title;
  int number = 0;
  bool isVisible = false;
};

class HostApplication {
 public:
  HostApplication();
  ~HostApplication();  // quits, if that is still to be done
  HostApplication(const HostApplication&) = delete;
  HostApplication& operator=(const HostApplication&) = delete;

  // Loads the bundle and sends "Startup". Call platform::SetPlaces before.
  std::string Start(const std::string& pluginBundleFolder);

  // Reads the file, brings the document to the front, shows the "Missing Fonts" window if a font that it names is not
  // active, and then notifies. Both out values may be null. `id` receives the ID of the document, or of the open one
  // with that path.
  std::string Open(const std::string& path, int32_t* id);
  std::string Make(int32_t* id);
  // Adds text in a font (a PostScript name; empty for none) and marks the document as changed.
  std::string Edit(int32_t id, const std::string& fontName);
  std::string Save(int32_t id);
  std::string SaveAs(int32_t id, const std::string& path);
  // Discards unsaved changes.
  std::string Close(int32_t id);
  // Sends "Do It" with `operation` as "Oper". *port receives "SPor" if the plug-in sets it, otherwise -1; it may be
  // null.
  std::string DoIt(int32_t operation, int32_t* port);
  std::string About();
  // Runs the loop for this number of seconds of platform::Clock.
  void Wait(double seconds);
  // Closes all documents without saving, with their notifications, then sends "Shutdown".
  void Quit();

  std::vector<DocumentInfo> Documents() const;  // in the order of opening
  int32_t FrontDocument() const;                // 0 if there is none
  std::vector<WindowInfo> Windows() const;      // all visible windows

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace host
