// Activates the fonts of documents by the plug-in's rules, and holds them until the documents are closed. The document
// goes the way of one that a host opens without dialogs. Main thread only; the process has further threads from Connect
// on. Each call waits for the agent.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "docfonts/Report.h"
#include "platform/Fonts.h"
#include "with-fonts/DocumentFonts.h"

class OneTrackedDocument;

namespace with_fonts {

// Where the fonts come from.
struct FontSource {
  std::string stateFolder;    // of the agent; set up (agent/client/StateFolder.h)
  std::string agentProgram;   // which is started if no agent runs
  std::string activeFolder;   // in which the agent keeps the links of active fonts
  bool isForSandbox = false;  // the fonts are for a program that does not see what symbolic links point to
  std::string linksFolder;    // gets links to the fonts, while the agent activates nothing; empty for the agent's way
};

class FontHolder {
 public:
  explicit FontHolder(FontSource source) : source_(std::move(source)) {}

  // Finds or starts the agent. platform::GetPlaces() must be those of its state folder. Returns an empty text, or one
  // line that says what is wrong.
  std::string Connect();
  // Opens a document whose fonts are read already, and waits until programs that start now see those that were
  // activated. A document that is open is not opened again.
  DocumentFonts Open(const std::string& path, const docfonts::Report& report);
  // Says what Open would do. Activates nothing.
  static DocumentFonts Predict(const docfonts::Report& report);
  // Writes the identification of the document's active fonts into the file, which keeps its date. Nobody may have it
  // open. Returns an empty text, or one line that says why the file is as before.
  static std::string Identify(const std::string& path, const docfonts::Report& report);
  // Gives the document's fonts back, except those that are kept. Does nothing for one that is not open.
  void Close(const std::string& path);
  // Gives the fonts of all documents back, except those that are kept.
  // Starts the agent for that if it has ended. Returns an empty text, or one line.
  std::string CloseAll();
  // Makes the fonts that are held stay when this process ends, and adds them to the record (KeptFonts.h). Returns an
  // empty text, or one line.
  std::string Keep(const std::string& recordFile);
  // Lets the plug-in's logic notice what the agent has announced, and starts the agent again if it has ended. Call it
  // every second or so. Returns an empty text, or one line.
  std::string Tick();

 private:
  struct Wanted;
  using Clock = std::chrono::steady_clock;
  static std::vector<Wanted> WantedOf(const docfonts::Report& report, const platform::FontSnapshot& system);
  static FontUse UseOf(const Wanted& wanted, const OneTrackedDocument& document, const platform::FontSnapshot& system);
  bool HoldFontsOfOthers(const std::string& identifier, const std::vector<Wanted>& wanted,
                         const platform::FontSnapshot& system);

  static bool IsLeftToOthers(const Wanted& wanted, const std::string& identifier);
  DocumentFonts OpenOnce(const std::string& path, const docfonts::Report& report, bool& areHeld);
  std::string BringAgentBack();

  const FontSource source_;
  Clock::time_point nextStart_;  // of an agent that has ended
};

}  // namespace with_fonts
