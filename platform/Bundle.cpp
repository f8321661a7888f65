#include "platform/Bundle.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <map>
#include <mutex>

#include "platform/Files.h"
#include "platform/PropertyList.h"
#include "platform/SharedObject.h"

namespace platform {

namespace {

std::mutex sMutex;
std::map<std::string, std::weak_ptr<Bundle>>& Registry() {
  static std::map<std::string, std::weak_ptr<Bundle>> sRegistry;
  return sRegistry;
}

std::string FolderOfThisProgram() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  const std::string program(path, length > 0 ? static_cast<size_t>(length) : 0);
  return program.substr(0, program.rfind('/'));
}

void Say(std::string* error, std::string text) {
  if (error) *error = std::move(text);
}

std::string WithoutTrailingSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

}  // namespace

Bundle::Bundle(std::string folder, Dictionary info)
    : folder_(std::move(folder)), identifier_(info.GetString("CFBundleIdentifier").Text()), info_(std::move(info)) {}

Bundle::~Bundle() = default;

BundleRef Bundle::Create(const std::string& path, std::string* error) {
  const std::string folder = WithoutTrailingSlash(path);
  const std::lock_guard lock(sMutex);
  if (BundleRef known = Registry()[folder].lock()) return known;
  std::string text;
  if (const std::error_code failure = ReadFile(folder + "/Info.plist", text)) {
    Say(error, folder + "/Info.plist: " + DescribeError(failure));
    return nullptr;
  }
  PropertyListResult parsed = ParseXMLPropertyList(text);
  Dictionary info(parsed.value);
  if (!info) {
    Say(error, folder + "/Info.plist: " + (parsed.error.empty() ? "no dictionary" : parsed.error));
    return nullptr;
  }
  BundleRef bundle(new Bundle(folder, info));
  Registry()[folder] = bundle;
  return bundle;
}

BundleRef Bundle::WithIdentifier(std::string_view identifier) {
  const std::lock_guard lock(sMutex);
  for (const auto& [folder, weak] : Registry()) {
    BundleRef bundle = weak.lock();
    if (bundle && bundle->identifier_ == identifier) return bundle;
  }
  return nullptr;
}

BundleRef Bundle::Main() {
  static const BundleRef sMain(new Bundle(FolderOfThisProgram(), Dictionary::Create()));
  return sMain;
}

std::string Bundle::URL() const {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,;=:@";  // of a path
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char c : folder_ + "/") {
    if (kPlain.find(c) != std::string_view::npos) {
      url += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return url;
}

std::string Bundle::LocalizedString(const std::string& key, const std::string& table) const {
  std::string xml;
  if (ReadFile(folder_ + "/Resources/" + table + ".strings", xml)) return key;
  const String text = Dictionary(ParseXMLPropertyList(xml).value).GetString(key);
  return text ? text.Text() : key;
}

std::string Bundle::ExecutablePath() const {
  const size_t slash = folder_.rfind('/');
  std::string name = folder_.substr(slash == std::string::npos ? 0 : slash + 1);
  name = name.substr(0, name.rfind('.'));
  return folder_ + "/" + name;
}

std::string Bundle::PrivateFrameworksFolder() const { return folder_ + "/Frameworks"; }

bool Bundle::Load(std::string* error) {
  if (handle_) return true;
  std::string problem = ProblemOfSharedObject(ExecutablePath());
  if (!problem.empty()) {
    Say(error, std::move(problem));
    return false;
  }
  handle_ = dlopen(ExecutablePath().c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle_) {
    const char* reason = dlerror();
    Say(error, reason ? reason : ExecutablePath() + " cannot be loaded");
  }
  return handle_ != nullptr;
}

void* Bundle::FunctionForName(const char* name) { return Load() ? dlsym(handle_, name) : nullptr; }

void Bundle::Unload() {
  if (handle_) dlclose(handle_);
  handle_ = nullptr;
}

}  // namespace platform
