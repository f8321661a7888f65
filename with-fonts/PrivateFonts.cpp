#include "with-fonts/PrivateFonts.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>

#include <filesystem>

#include "platform/Files.h"
#include "platform/FontConfiguration.h"
#include "platform/LastError.h"

namespace with_fonts {

namespace {

namespace fs = std::filesystem;

std::string Problem(const std::string& path, const std::error_code& error) {
  return path + ": " + platform::DescribeError(error);
}

// Returns an empty descriptor if another process has the lock.
platform::Descriptor Lock(const std::string& folder) {
  platform::Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor && flock(descriptor.Get(), LOCK_EX | LOCK_NB) != 0) descriptor.Close();
  return descriptor;
}

void RemoveAbandoned(const std::string& all) {
  std::error_code error;
  for (fs::directory_iterator entry(all, error), end; !error && entry != end; entry.increment(error)) {
    const std::string folder = entry->path().string();
    // What can't be removed harms no one, and the next start tries again.
    if (Lock(folder)) platform::RemoveTree(folder);
  }
}

}  // namespace

std::string PrivateFonts::Create(const std::string& stateFolder) {
  const std::string all = stateFolder + "/private";
  if (const std::error_code error = platform::MakeFolder(all, 0700)) return Problem(all, error);
  RemoveAbandoned(all);
  std::string name = all + "/XXXXXX";
  if (!mkdtemp(name.data())) return Problem(name, platform::LastError());
  folder_ = name;
  lock_ = Lock(folder_);
  // Another start has taken it for abandoned between these two steps.
  if (!lock_) return folder_ + ": is in use";
  if (const std::error_code error = platform::MakeFolder(LinksFolder())) return Problem(LinksFolder(), error);
  const std::string text = platform::FontConfigurationText(
      {.includes = {platform::UserFontConfigurationFile()}, .folders = {LinksFolder()}});
  const std::error_code error = platform::ReplaceFile(ConfigurationFile(), text);
  return error ? Problem(ConfigurationFile(), error) : "";
}

void PrivateFonts::Remove() {
  if (!IsCreated()) return;
  platform::RemoveTree(folder_);
  lock_.Close();
}

}  // namespace with_fonts
