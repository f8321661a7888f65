// The process that holds the fonts of this program's documents. Its connection to the agent has a thread, and this
// program forks processes all the time, so it must not have threads itself. If this program is killed, so is that
// process, and the agent gives the fonts back.
#pragma once

#include <sys/types.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "docfonts/ChildProcess.h"
#include "docfonts/Report.h"
#include "with-fonts/DocumentFonts.h"
#include "with-fonts/FontHolder.h"
#include "with-fonts/PrivateFonts.h"

namespace with_fonts {

// Not thread-safe. Each call waits for the process, which waits for the agent.
class FontKeeper {
 public:
  FontKeeper() = default;
  ~FontKeeper() { End(); }
  FontKeeper(const FontKeeper&) = delete;
  FontKeeper& operator=(const FontKeeper&) = delete;

  // Finds or starts the agent. The process removes `privateFonts` at its end if they are created. Returns an empty
  // text, or one line that says why no font can be activated. Once, while the program has no other threads.
  std::string Start(const FontSource& source, PrivateFonts& privateFonts);
  // Gives all fonts back, unless they are kept or the process holds them for others. Waits until that is done.
  void End();
  bool IsStarted() const { return process_.IsStarted(); }
  // True if the process was killed; then its fonts were given back. After Forget it can be started again.
  bool HasEnded() const { return process_.HasEnded(); }
  void Forget();
  // False once a call has noticed that the process has ended by itself.
  bool IsThere() const { return isThere_; }

  // Activates the fonts that the report names. The path is that of the document, any bytes.
  DocumentFonts Open(const std::string& path, const docfonts::Report& report);
  // Gives the document's fonts back. Does nothing for one that is not open. Returns false if the process has ended.
  bool Close(const std::string& path);
  // Says what Open would do. Activates nothing.
  DocumentFonts Predict(const docfonts::Report& report);
  // Writes the identification of the document's active fonts into the file (FontHolder.h). Returns an empty text, or
  // one line.
  std::string Identify(const std::string& path, const docfonts::Report& report);
  // Lets the fonts stay active when the process ends, and adds them to the record (KeptFonts.h). Returns an empty text,
  // or one line.
  std::string Keep(const std::string& recordFile);
  // Lets the process hold the fonts until all these processes have ended, whatever happens to this one. No other call
  // may follow. Returns an empty text, or one line.
  std::string HoldFor(const std::vector<pid_t>& processes);

 private:
  DocumentFonts AskAbout(const docfonts::Report& report, std::string_view verb, std::string_view path);
  bool Ask(std::initializer_list<std::string_view> messages, std::string& answer);
  docfonts::ChildProcess process_;
  bool isThere_ = true;
};

}  // namespace with_fonts
