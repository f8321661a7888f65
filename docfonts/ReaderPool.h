// Processes that read documents. A document can make a reader loop, exhaust memory or crash. That ends its process,
// gives this document a problem, and the next document gets a new process. Several processes also use all processors.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "docfonts/ChildProcess.h"
#include "docfonts/Report.h"
#include "docfonts/include/ReadingTime.h"

namespace docfonts {

using ReadDocument = std::function<Report(const std::string& path)>;

// Limits for one document.
struct ReaderLimits {
  uint64_t memory = uint64_t{1} << 30;     // bytes of address space of the process
  uint32_t seconds = kSecondsPerDocument;  // of processor time, plus what ReadingTime.h adds
  uint32_t patience = kPatienceFactor;     // real time as a multiple of that
};

// Not thread-safe. The program must have no other threads: a process is started for each reader, and again after one
// ended.
class ReaderPool {
 public:
  // `read` runs in the reader processes.
  ReaderPool(size_t processes, ReadDocument read, ReaderLimits limits = {});
  ~ReaderPool();  // kills the processes
  ReaderPool(const ReaderPool&) = delete;
  ReaderPool& operator=(const ReaderPool&) = delete;

  // Reads all documents that `next` returns, until it returns none, and passes the reports to `take` in the same order.
  // Stops early if `take` returns false.
  void Run(const std::function<std::optional<std::string>()>& next, const std::function<bool(Report)>& take);

 private:
  struct Reader;
  using Clock = std::chrono::steady_clock;

  bool Give(Reader& reader, std::string path, size_t number);
  bool Start(Reader& reader, std::string& problem);
  void Serve(int socket);
  void LimitNext(const std::string& path) const;
  void AwaitReports(const std::function<void(size_t number, Report)>& done);
  Report Receive(Reader& reader);
  void Fail(Reader& reader, Report& report, bool isLate);

  const ReadDocument read_;
  const ReaderLimits limits_;
  std::vector<std::unique_ptr<Reader>> readers_;
};

}  // namespace docfonts
