// Marks what libplatform offers to the programs and bundles that share it.
#pragma once

#ifdef PLATFORM_BUILD
#define PLATFORM_API __attribute__((visibility("default")))
#else
#define PLATFORM_API
#endif
