// Marks the symbols that libplatform exports. All others are hidden.
#pragma once

#ifdef PLATFORM_BUILD
#define PLATFORM_API __attribute__((visibility("default")))
#else
#define PLATFORM_API
#endif
