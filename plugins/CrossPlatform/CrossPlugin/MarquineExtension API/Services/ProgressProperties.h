// What a progress window shows: the dictionary that the user-interface framework takes.
#pragma once

#include <string>

#include "Services/VPFDictionary.h"

class ProgressProperties {
 public:
  explicit ProgressProperties(int max);
  virtual ~ProgressProperties();
  virtual void SetCurrentProgress(int current);
  VPFDictionary& GetProperties() { return mProperties; }
  const platform::Dictionary& GetDictionary() const { return mProperties.GetDictionary(); }

 protected:
  int GetMax() const { return mMax; }
  VPFDictionary mProperties;

 private:
  int mMax;
};

// While fonts are activated or given back: the header tells how many remain, the status which font it is.
class FontProgressProperties : public ProgressProperties {
 public:
  // The header format holds one "%d" for the remaining count.
  FontProgressProperties(int max, const std::string& windowTitle, const std::string& headerFormat);
  // At the maximum the header stays as it was.
  void SetCurrentProgress(int current) override;
  void SetCurrentPostscriptName(const std::string& name);

 private:
  std::string mHeaderFormat;
};
