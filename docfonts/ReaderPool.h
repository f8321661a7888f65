// Processes that read documents. Any bytes can make a reader loop, need too much memory or crash; that ends its process,
// costs the one document a problem, and the next document gets a new process. The processes also use all processors.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "docfonts/Report.h"
#include "platform/Descriptor.h"

namespace docfonts {

using ReadDocument = std::function<Report(const std::string& path)>;

// What one document may cost.
struct ReaderLimits {
  uint64_t memory = uint64_t{1} << 30;  // bytes of address space, as the process's whole
  uint32_t seconds = 10;                // of processor time, one more for the start and for each 32 MiB of the document
};

// One thread, and no other threads in the program while processes are started.
class ReaderPool {
 public:
  // `read` runs in the processes.
  ReaderPool(size_t processes, ReadDocument read, ReaderLimits limits = {});
  ~ReaderPool();  // ends the processes, whatever they do
  ReaderPool(const ReaderPool&) = delete;
  ReaderPool& operator=(const ReaderPool&) = delete;

  // Reads all documents that `next` gives until it gives none, and hands each report to `take`, in the same order. Stops
  // early if `take` is false.
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
  void End(Reader& reader);
  uint32_t SecondsFor(const std::string& path) const;

  const ReadDocument read_;
  const ReaderLimits limits_;
  std::vector<std::unique_ptr<Reader>> readers_;
};

}  // namespace docfonts
