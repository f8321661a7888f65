// What the commands print: tables for people, and JSON, one object a line.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace nexctl {

using OrderedJson = nlohmann::ordered_json;

class Output {
 public:
  explicit Output(bool isJson) : isJson_(isJson) {}

  bool IsJson() const { return isJson_; }
  // One line for people; safe for a terminal.
  void Line(const std::string& text) const;
  void Object(const OrderedJson& object) const;
  // A table with a header. Columns are aligned; the last one is not padded. `rows` have as many cells as the header.
  // With JSON, each row is an object, with the words of the header as keys.
  void Table(const std::vector<std::string>& header, const std::vector<std::vector<std::string>>& rows) const;

 private:
  const bool isJson_;
};

}  // namespace nexctl
