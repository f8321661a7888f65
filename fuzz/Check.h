// Checks a condition that must hold for all input. If it fails, the program ends, in every build.
#pragma once

#include <cstdio>
#include <cstdlib>

#define CHECK(condition)                                                                   \
  do {                                                                                     \
    if (!(condition)) {                                                                    \
      std::fprintf(stderr, "%s:%d: broken promise: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                        \
    }                                                                                      \
  } while (false)
