// Questions about the machine, as far as the rest needs them.
#pragma once

class GSystem {
 public:
  // Counted; the first call has SIGPIPE ignored, so that a send to a closed connection fails instead of ending the
  // host.
  static void InitializeSockets();
  static bool IsWindows() { return false; }
};
