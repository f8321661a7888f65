// Writes the elements of the XML form of values and trees to a stream.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

class XMLElementWriter {
 public:
  using Attributes = std::vector<std::pair<std::string, std::string>>;

  // With `pretty`, writes each element on a line of its own, indented by tabs.
  XMLElementWriter(std::ostream& stream, const std::string& prefix, bool pretty);

  void Open(const char* name, const Attributes& attributes, unsigned indent);
  void Close(const char* name, unsigned indent);
  void WriteTextElement(const char* name, const std::string& text, unsigned indent);

  // True if XML can contain the text: well-formed UTF-8 without control characters other than tab and line ends.
  static bool CanHold(const std::string& text);

 private:
  void BeginLine(unsigned indent);
  void EndLine();

  std::ostream& mStream;
  std::string mPrefix;  // including the colon
  bool mIsPretty;
};
