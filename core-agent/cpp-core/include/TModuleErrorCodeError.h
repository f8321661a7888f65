// The exception with which the REST layer reports a code.
#pragma once

#include <stdexcept>
#include <string>

#include "ErrorCodes.h"

namespace restful_mapper {

class ApiError : public std::runtime_error {
 public:
  ApiError(const std::string& text, int status) : std::runtime_error(text), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

class TModuleErrorCodeError : public ApiError {
 public:
  explicit TModuleErrorCodeError(TModuleErrorCode error) : ApiError("TModuleErrorCode", 1), error_(error) {}
  TModuleErrorCode error() const { return error_; }

 private:
  TModuleErrorCode error_;
};

}  // namespace restful_mapper
