// One run of the host, observed from outside: carries out the user's commands, looks at the operating system's fonts
// before and after, and reports which fonts each document named, which were active, and which were activated and
// deactivated.
//
// Documents are named by the path as the user gave it, untitled ones "Untitled-1" and so on.
//
// Sources: SessionListings.cpp (Show... and Document...), Session.cpp (the rest).
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

  // Starts the agent and the plug-in. Missing parts are reported, but documents can still be opened. Returns false if
  // the plug-in itself cannot be loaded.
  bool Start(LibrarySummary* library);

  // Each operation reports its outcome. A failed one does not affect other documents.
  bool Open(const std::string& file);
  void Make();
  void Edit(const std::string& font);
  // An empty name means the front document.
  void Save(const std::string& document);
  void SaveAs(const std::string& file);
  // The document continues at the new path but keeps its name in the report.
  void SaveCopyInSandbox();
  void Close(const std::string& document);
  void CloseAll();
  void DoIt(int32_t operation);
  void Wait(double seconds);
  void SetPreference(const std::string& key, const std::string& value);
  // For this run only; the stored preference does not change.
  void OverridePreference(const std::string& key, bool value) { preferences_.Override(key, value); }
  void Quit();

  void ShowDocuments();
  void ShowFonts();
  void ShowWindows();
  void ShowTrace(size_t lines);
  void ShowPreferences();

  // Notices what happened without a command: an agent that has ended is started again, and documents that the plug-in
  // closed and opened are known again. Call it before each operation, because the loop also runs while the console
  // waits for a command and while a box is open.
  void CatchUp();
  // True if the agent runs, as far as is known without a question.
  bool HasAgent() { return agent_.IsConnected(); }
  AgentLink& Agent() { return agent_; }

  std::vector<std::string> DocumentNames() const;
  // Returns the title of an open document that names this font; empty if there is none.
  std::string DocumentUsing(const std::string& postScriptName) const;
  // True if the state folder was removed or replaced. Then no more documents are opened; open ones can be saved.
  bool IsLost() const { return isLost_; }

 private:
  struct KnownDocument {
    std::string name;  // as given
    std::string path;  // the host's path; empty while untitled
    int32_t id = 0;
    std::vector<std::string> fontNames;
    std::vector<std::string> identified{};  // those with identification in the file before its last save
  };

  // A framework that the plug-in loads.
  struct Part {
    std::string framework;
    std::span<const char* const> functions;  // required functions
    const char* loss;                        // what does not work without it
  };

  void CheckParts();
  void CheckPart(const Part& part);
  bool StartPlugin();
  void TakeProblem(const std::string& line);
  KnownDocument* Find(const std::string& document);
  KnownDocument* Front();
  // Catches up, then returns the document with this name, or the front one. Returns null, and reports it, if there is
  // none.
  KnownDocument* Choose(const std::string& document, const char* operation);
  host::DocumentInfo InfoOf(int32_t id) const;
  // Catches up. Returns false, and reports it, if no more documents can be opened.
  bool CanOpen(const std::string& document);
  // Updates the list after what the plug-in did: documents that it closed and reopened have new IDs.
  void Follow();
  void CheckState();
  void CheckAgent();
  void ReportOpened(const KnownDocument& document, const ActiveFiles& before);
  std::string WhyActivated(const std::string& name, const std::vector<std::string>& named);
  void ReportSaved(const KnownDocument& document, const std::string& path);
  std::vector<std::string> IdentifiedFonts(const KnownDocument& document) const;
  void WarnOfLosses(const KnownDocument& document);
  bool SaveTo(KnownDocument& document, const std::string* file);  // null for its own file

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
