// The contents of a progress window, as the dictionary that the user-interface framework takes.
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

// Progress of activating or deactivating fonts: the header shows how many remain, the status shows the current font.
class FontProgressProperties : public ProgressProperties {
 public:
  // headerFormat contains one "%d" for the number of remaining fonts.
  FontProgressProperties(int max, const std::string& windowTitle, const std::string& headerFormat);
  // At the maximum the header does not change.
  void SetCurrentProgress(int current) override;
  void SetCurrentPostscriptName(const std::string& name);

 private:
  std::string mHeaderFormat;
};
