#include "host/console/FontLister.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>

#include "docfonts/include/ReadingTime.h"
#include "platform/Descriptor.h"

extern char** environ;

namespace console {

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

// What docfonts needs for itself, beside the document.
constexpr std::chrono::seconds kStart{10};

pid_t Start(const std::string& program, const std::string& document, int output, int& failure) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  const char* const arguments[] = {program.c_str(), "--json", "--", document.c_str(), nullptr};
  pid_t process = 0;
  failure = posix_spawn(&process, program.c_str(), &actions, nullptr, const_cast<char* const*>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? process : 0;
}

// Reads everything until the other side closes. Returns false if that takes too long.
bool ReadToEnd(int descriptor, std::string& text, std::chrono::seconds patience) {
  const auto end = Clock::now() + patience;
  for (char block[65536];;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd ready{descriptor, POLLIN, 0};
    const int count = left > 0 ? poll(&ready, 1, static_cast<int>(left)) : 0;
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    const ssize_t got = read(descriptor, block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    text.append(block, static_cast<size_t>(got));
  }
}

// The program is ours, but a user may have replaced it by one of another version.
ListedFonts Understand(const std::string& text) {
  try {
    ListedFonts listed;
    const Json object = Json::parse(text);
    for (const Json& font : object.at("fonts")) listed.names.push_back(font.at("name"));
    const std::vector<std::string> problems = object.value("problems", std::vector<std::string>());
    if (!problems.empty()) listed.problem = problems[0];
    return listed;
  } catch (const Json::exception&) {
    return {{}, text.empty() ? "docfonts does not answer" : "the answer of docfonts is not understood"};
  }
}

}  // namespace

ListedFonts ListFonts(const std::string& program, const std::string& document) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {{}, program + ": " + std::strerror(errno)};
  const platform::Descriptor output(ends[0]);
  platform::Descriptor input(ends[1]);
  int failure = 0;
  const pid_t process = Start(program, document, input.Get(), failure);
  if (process == 0) return {{}, program + " can't be started: " + std::strerror(failure)};
  input.Close();
  std::string text;
  const auto patience = docfonts::PatienceFor(docfonts::ProcessorSecondsFor(document)) + kStart;
  const bool isWhole = ReadToEnd(output.Get(), text, patience);
  if (!isWhole) kill(process, SIGKILL);
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
  return isWhole ? Understand(text) : ListedFonts{{}, "listing its fonts takes too long"};
}

}  // namespace console
