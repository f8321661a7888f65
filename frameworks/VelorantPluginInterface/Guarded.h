// Keeps exceptions inside the library.
#pragma once

#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

#include "frameworks/VelorantPluginInterface/ResultCodes.h"

namespace plugin_interface {

// Runs a body and converts its exceptions to codes. For exported functions, whose callers may be built differently, and
// for threads.
template <class Body>
TModuleErrorCode Guarded(const Body& body) {
  try {
    return body();
  } catch (const nlohmann::json::exception&) {
    return kInvalidMessage;
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::system_error&) {
    return kOutOfMemory;  // no thread available for the connection
  }
}

}  // namespace plugin_interface
