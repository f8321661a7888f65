// A promise that a fuzz target checks; a broken one ends the program, in every build.
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
