#include "nexctl/Output.h"

#include <algorithm>
#include <cstdio>

#include "platform/PlainText.h"

namespace nexctl {

void Output::Line(const std::string& text) const { std::printf("%s\n", platform::OneLine(text).c_str()); }

void Output::Object(const OrderedJson& object) const {
  std::printf("%s\n", object.dump(-1, ' ', false, OrderedJson::error_handler_t::replace).c_str());
  std::fflush(stdout);
}

void Output::Table(const std::vector<std::string>& header, const std::vector<std::vector<std::string>>& rows) const {
  if (isJson_) {
    for (const auto& row : rows) {
      OrderedJson object = OrderedJson::object();
      for (size_t i = 0; i < header.size(); ++i) object[header[i]] = row[i];
      Object(object);
    }
    return;
  }
  if (rows.empty()) return;
  std::vector<std::vector<std::string>> shown = {header};
  for (const auto& row : rows) {
    shown.emplace_back();
    for (const std::string& cell : row) shown.back().push_back(platform::OneLine(cell));
  }
  std::vector<size_t> widths(header.size());
  for (const auto& row : shown) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], platform::CountCharacters(row[i]));
  }
  for (const auto& row : shown) {
    std::string line;
    for (size_t i = 0; i + 1 < row.size(); ++i) {
      line += row[i] + std::string(widths[i] - platform::CountCharacters(row[i]) + 2, ' ');
    }
    std::printf("%s%s\n", line.c_str(), row.back().c_str());
  }
}

}  // namespace nexctl
