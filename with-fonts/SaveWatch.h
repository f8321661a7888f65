// Notices when documents were saved, and nobody has them open any more.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/FileStamp.h"

namespace with_fonts {

class SaveWatch {
 public:
  // `take` gets the path of a document that was saved. It may change the file; that does not count as saving.
  explicit SaveWatch(std::function<void(const std::string& path)> take) : take_(std::move(take)) {}

  // Absolute paths. Documents whose folder can't be watched are noticed by TakeSaved all the same.
  void Watch(const std::vector<std::string>& paths);
  // Readable when a document may have been saved. Negative before Watch.
  int Descriptor() const { return notify_.Get(); }
  // Hands over each document that has changed since the last time. One that is still open waits for the next call.
  void TakeSaved();

 private:
  const std::function<void(const std::string& path)> take_;
  platform::Descriptor notify_;
  std::map<std::string, platform::FileStamp> documents_;
};

}  // namespace with_fonts
