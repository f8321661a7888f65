// What keeps exceptions inside the library.
#pragma once

#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

#include "agent/include/CallEncoding.h"
#include "frameworks/VelorantPluginInterface/ResultCodes.h"

namespace plugin_interface {

// Runs a body that nothing may leave but a code: that of an exported function, whose caller may be of another make, or of
// a thread.
template <class Body>
TModuleErrorCode Guarded(const Body& body) {
  try {
    return body();
  } catch (const nlohmann::json::exception&) {
    return kInvalidMessage;
  } catch (const agent_protocol::BadMessage&) {
    return kInvalidMessage;
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::system_error&) {
    return kOutOfMemory;  // no further thread for the connection
  }
}

}  // namespace plugin_interface
