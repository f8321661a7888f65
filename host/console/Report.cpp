#include "host/console/Report.h"

#include "host/Problems.h"

namespace console {

void Report::Opened(const OpenedReport& opened) {
  ++tally_.documents;
  tally_.named += opened.named.size();
  tally_.active += opened.active.size();
  tally_.activated += opened.activated.size();
  tally_.missing += opened.missing.size();
  WriteOpened(opened);
}

void Report::Saving(const std::string& file, const std::vector<std::string>& atRisk) { WriteSaving(file, atRisk); }

void Report::Saved(const std::string& file, const std::vector<std::string>& slug,
                   const std::vector<std::string>& lost) {
  WriteSaved(file, slug, lost);
}

void Report::Closed(const std::string& file, const std::vector<std::string>& deactivated) {
  WriteClosed(file, deactivated);
}

void Report::Error(const std::string& file, const std::string& message) {
  ++errors_;
  WriteError(file, message);
}

bool RunReported(Report& report, const std::string& what, const std::function<void()>& call) {
  try {
    call();
    return true;
  } catch (...) {
    report.Error(what, host::DescribeCurrentException());
    return false;
  }
}

}  // namespace console
