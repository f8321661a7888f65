// One run of the host, seen from outside: it carries out what the user asks for, looks at the operating system's fonts
// before and after, and reports what each document named, found active, had activated and gave back.
//
// Documents are named by the path as the user gave it, untitled ones "Untitled-1" and so on.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "host/HostApplication.h"
#include "host/console/AgentLink.h"
#include "host/console/FontWatch.h"
#include "host/console/Preferences.h"
#include "host/console/Report.h"
#include "host/console/Sandbox.h"
#include "host/console/TraceRecorder.h"

namespace console {

class Session {
 public:
  Session(Sandbox& sandbox, Report& report);
  ~Session();

  // Starts agent and plug-in. What is missing is reported; documents can be opened all the same. False if the plug-in
  // itself can't be loaded.
  bool Start(LibrarySummary* library);

  // Each operation reports its outcome; a failed one leaves the others' documents as they are.
  bool Open(const std::string& file);
  void Make();
  void Edit(const std::string& font);
  // An empty name means the document in front.
  void Save(const std::string& document);
  void SaveAs(const std::string& file);
  // The document goes on at the new place, but is named in the report as before.
  void SaveCopyInSandbox();
  void Close(const std::string& document);
  void CloseAll();
  void DoIt(int32_t operation);
  void Wait(double seconds);
  void SetPreference(const std::string& key, const std::string& value);
  // For this run only; what the user has stored stays as it is.
  void OverridePreference(const std::string& key, bool value) { preferences_.Override(key, value); }
  void Quit();

  void ShowDocuments();
  void ShowFonts();
  void ShowWindows();
  void ShowTrace(size_t lines);
  void ShowPreferences();

  std::vector<std::string> DocumentNames() const;
  // Whether the state folder was removed or replaced. Then no more documents are opened; open ones can be saved.
  bool IsLost() const { return isLost_; }

 private:
  struct KnownDocument {
    std::string name;  // as given
    std::string path;  // the host's; empty while untitled
    int32_t id = 0;
    std::vector<std::string> fontNames;
    std::vector<std::string> identified{};  // of those, the ones with identification in the file before its last save
  };

  // A framework that the plug-in loads.
  struct Part {
    std::string framework;
    std::span<const char* const> functions;  // that it must have
    const char* loss;                        // without it
  };

  void CheckParts();
  void CheckPart(const Part& part);
  bool StartPlugin();
  void TakeProblem(const std::string& line);
  KnownDocument* Find(const std::string& document);
  KnownDocument* Front();
  // Catches up; then the document of this name, or the one in front. Null, reported, if there is none.
  KnownDocument* Choose(const std::string& document, const char* operation);
  host::DocumentInfo InfoOf(int32_t id) const;
  // Call before each operation: the loop also runs while the console waits for a command and while a box is open.
  void CatchUp();
  // Catches up; false, reported, if no more documents can be opened.
  bool CanOpen(const std::string& document);
  // Takes note of what the plug-in did: documents that it closed and opened again have new numbers.
  void Follow();
  void CheckState();
  void CheckAgent();
  void ReportOpened(const KnownDocument& document, const ActiveFiles& before);
  std::string WhyActivated(const std::string& name, const std::vector<std::string>& named);
  void ReportSaved(const KnownDocument& document, const std::string& path);
  std::vector<std::string> IdentifiedFonts(const KnownDocument& document) const;
  void WarnOfLosses(const KnownDocument& document);
  bool SaveTo(KnownDocument& document, const std::string* file);  // null: its own file

  Sandbox& sandbox_;
  Report& report_;
  AgentLink agent_;
  FontWatch fonts_;
  TraceRecorder trace_;
  Preferences preferences_;
  std::unique_ptr<host::HostApplication> host_;
  std::vector<KnownDocument> documents_;  // in the order of opening
  std::set<std::string> toldProblems_;    // since the last open or save
  bool isAgentGone_ = false;              // reported
  bool isLost_ = false;                   // reported
};

}  // namespace console
