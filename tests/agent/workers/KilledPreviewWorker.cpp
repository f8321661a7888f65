// Makes a preview-worker that is killed before one of its calls: of the socket's, or for a glyph. The file that the
// variable KILL_AT names holds the number of the call. The first process takes the file away, so the next one lives; a
// process that is killed leaves another one, KILL_AT.killed.
#include <dlfcn.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

// How many calls are left; below 0: any number.
int TakeNumber(const std::string& path) {
  int number = -1;
  std::ifstream(path) >> number;
  std::filesystem::remove(path);
  return number;
}

void BeforeCall() {
  static const std::string sPath = std::getenv("KILL_AT");
  static int sLeft = TakeNumber(sPath);
  if (sLeft < 0 || sLeft-- > 0) return;
  std::ofstream(sPath + ".killed").flush();
  kill(getpid(), SIGKILL);
}

}  // namespace

// Every library of the program calls these.
#define REPLACED extern "C" __attribute__((visibility("default")))

REPLACED ssize_t recv(int socket, void* bytes, size_t size, int flags) {
  BeforeCall();
  return syscall(SYS_recvfrom, socket, bytes, size, flags, nullptr, nullptr);
}
REPLACED ssize_t send(int socket, const void* bytes, size_t size, int flags) {
  BeforeCall();
  return syscall(SYS_sendto, socket, bytes, size, flags, nullptr, 0);
}
REPLACED FT_Error FT_Load_Glyph(FT_Face face, FT_UInt glyph, FT_Int32 flags) {
  static const auto sReal = reinterpret_cast<decltype(&FT_Load_Glyph)>(dlsym(RTLD_NEXT, "FT_Load_Glyph"));
  BeforeCall();
  return sReal(face, glyph, flags);
}
