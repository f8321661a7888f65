// One run of the program: its documents, their fonts, and the program that uses them.
#pragma once

#include <string>
#include <vector>

#include "with-fonts/DocumentFonts.h"
#include "with-fonts/Documents.h"
#include "with-fonts/FontKeeper.h"
#include "with-fonts/Options.h"
#include "with-fonts/PrivateFonts.h"
#include "with-fonts/RunningInstances.h"

namespace with_fonts {

// Exit statuses without a program.
enum EStatus : int { kAllFound = 0, kNotAllFound = 1, kWrongUsage = 2 };

class Session {
 public:
  explicit Session(const Options& options) : options_(options) {}

  // Does what the options say and returns the exit status.
  int Run();

 private:
  std::string SetUp();
  std::string ShowFontsToProgram();
  std::string ShowPrivateFonts();
  void UseConfiguration(const std::string& file);
  std::string ServeDocuments();
  void Write(const DocumentFonts& fonts);
  int RunIt();
  int AwaitInterrupt();
  std::string WatchFolders();
  std::string Release();
  void Identify(const std::string& path);
  void BringKeeperBack();
  void PassFontsOn(const RunningInstances& instances);

  const Options& options_;
  FontSource source_;
  std::vector<std::string> variables_;  // for the program's environment
  std::vector<Document> documents_;
  PrivateFonts privateFonts_;
  FontKeeper keeper_;
  bool isComplete_ = true;
  int restarts_ = 0;  // of the keeper
};

}  // namespace with_fonts
