// What is told to the user: what each document needed and got, and what went wrong.
//
// Two forms of the same content. The text is grouped by document and ends with a tally. JSON is one object a line on
// standard output, which then holds nothing else; notes and listings go to standard error.
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

// Documents are named by the path as it was given.
struct OpenedReport {
  std::string file;
  std::vector<std::string> named;  // all distinct PostScript names that the document names, in the order found
  std::vector<std::string> active;
  std::vector<ActivatedFont> activated;
  std::vector<std::string> missing;
  // The fonts of a document that names none in a way that host and plug-in understand, as docfonts lists them.
  std::vector<std::string> readers{};
};

class Report {
 public:
  virtual ~Report() = default;

  void Opened(const OpenedReport& opened);
  // Before a save: fonts whose identification it can take out of the document, because they are not active now.
  void Saving(const std::string& file, const std::vector<std::string>& atRisk);
  // slug: whose identification the document holds now; lost: whose it held before, though it still names the font.
  void Saved(const std::string& file, const std::vector<std::string>& slug, const std::vector<std::string>& lost);
  void Closed(const std::string& file, const std::vector<std::string>& deactivated);
  // Something went wrong with this file, folder or program. It makes the exit status 1.
  void Error(const std::string& file, const std::string& message);
  // A line about a document, such as where its copy lies.
  virtual void Note(const std::string& file, const std::string& line) = 0;
  // What was asked for with "show".
  virtual void Listing(const std::vector<std::string>& lines) = 0;
  // After the last document.
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

// Runs the call. What it throws becomes an error of the report about `what`; true if nothing was thrown.
bool RunReported(Report& report, const std::string& what, const std::function<void()>& call);

std::unique_ptr<Report> MakeTextReport();
std::unique_ptr<Report> MakeJsonReport();

}  // namespace console
