// Sets or removes an environment variable, and restores its former state at the end.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace test_support {

class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* former = std::getenv(name)) former_ = former;
    Put(value);
  }
  ~ScopedVariable() { Put(former_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Put(const std::optional<std::string>& value) const {
    value ? setenv(name_, value->c_str(), 1) : unsetenv(name_);
  }
  const char* name_;
  std::optional<std::string> former_;
};

}  // namespace test_support
