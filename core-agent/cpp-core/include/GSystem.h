// Functions of the operating system.
#pragma once

class GSystem {
 public:
  // Counts its calls. The first one ignores SIGPIPE, so that sending on a closed connection fails instead of
  // terminating the host.
  static void InitializeSockets();
  static bool IsWindows() { return false; }
};
