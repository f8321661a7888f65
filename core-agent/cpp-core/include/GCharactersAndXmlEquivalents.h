// The characters that XML requires to be escaped, with their entities. The ampersand is first, so that escaping does
// not escape its own output.
#pragma once

#include <string>
#include <utility>
#include <vector>

class GCharactersAndXmlEquivalents {
 public:
  GCharactersAndXmlEquivalents();
  static const GCharactersAndXmlEquivalents& GetSharedInstance();
  const std::vector<std::pair<std::string, std::string>>& Pairs() const { return mPairs; }

 private:
  std::vector<std::pair<std::string, std::string>> mPairs;
};
