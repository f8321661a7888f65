// The report for the user: what each document needed and got, and what went wrong.
//
// There are two forms of the same content. The text is grouped by document and ends with a summary. JSON is one object
// per line on standard output, which contains nothing else; notes and listings go to standard error.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace console {

struct ActivatedFont {
  std::string name;
  std::string file;
  std::string why;
};

// Documents are named by the path as given.
struct OpenedReport {
  std::string file;
  std::vector<std::string> named;  // all distinct PostScript names in the document, in the order found
  std::vector<std::string> active;
  std::vector<ActivatedFont> activated;
  std::vector<std::string> missing;
  // The fonts from docfonts, for a document in which neither host nor plug-in finds any.
  std::vector<std::string> readers{};
};

class Report {
 public:
  virtual ~Report() = default;

  void Opened(const OpenedReport& opened);
  // Call before a save, with the fonts whose identification the save may remove, because they are not active now.
  void Saving(const std::string& file, const std::vector<std::string>& atRisk);
  // `slug`: the fonts whose identification the document contains now. `lost`: those whose identification it contained
  // before, although it still names them.
  void Saved(const std::string& file, const std::vector<std::string>& slug, const std::vector<std::string>& lost);
  void Closed(const std::string& file, const std::vector<std::string>& deactivated);
  // Reports a failure with this file, folder or program. Sets the exit status to 1.
  void Error(const std::string& file, const std::string& message);
  // A line about a document, for example where its copy is.
  virtual void Note(const std::string& file, const std::string& line) = 0;
  // The result of "show".
  virtual void Listing(const std::vector<std::string>& lines) = 0;
  // Call after the last document.
  virtual void Finish() = 0;

  int Errors() const { return errors_; }

 protected:
  struct Tally {
    size_t documents = 0, named = 0, active = 0, activated = 0, missing = 0;
  };
  const Tally& Counts() const { return tally_; }

 private:
  virtual void WriteOpened(const OpenedReport& opened) = 0;
  virtual void WriteSaving(const std::string& file, const std::vector<std::string>& atRisk) = 0;
  virtual void WriteSaved(const std::string& file, const std::vector<std::string>& slug,
                          const std::vector<std::string>& lost) = 0;
  virtual void WriteClosed(const std::string& file, const std::vector<std::string>& deactivated) = 0;
  virtual void WriteError(const std::string& file, const std::string& message) = 0;

  Tally tally_;
  int errors_ = 0;
};

// Runs the call. Returns true if it did not throw; an exception becomes an error of the report about `what`.
bool RunReported(Report& report, const std::string& what, const std::function<void()>& call);

std::unique_ptr<Report> MakeTextReport();
std::unique_ptr<Report> MakeJsonReport();

}  // namespace console
