#include "host/Problems.h"

#include <exception>
#include <new>

namespace host {

std::string DescribeHostError(host_sdk::SPErr error) {
  std::string code;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto byte = static_cast<unsigned char>(static_cast<uint32_t>(error) >> shift & 0xFF);
    if (byte < 0x20 || byte > 0x7E) return std::to_string(error);
    code.push_back(static_cast<char>(byte));
  }
  return "'" + code + "' (" + std::to_string(error) + ")";
}

std::string DescribeCurrentException() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return "there is not enough memory";
  } catch (const std::exception& error) {
    return std::string("an exception was thrown: ") + error.what();
  } catch (int error) {
    return "error " + DescribeHostError(error) + " was thrown";
  } catch (unsigned error) {
    return "error " + DescribeHostError(static_cast<host_sdk::SPErr>(error)) + " was thrown";
  } catch (long error) {
    return "error " + DescribeHostError(static_cast<host_sdk::SPErr>(error)) + " was thrown";
  } catch (...) {
    return "an exception of an unknown type was thrown";
  }
}

}  // namespace host
