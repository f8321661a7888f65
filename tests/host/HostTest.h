// The host with a plug-in that the test controls. At the end of each test the plug-in must have released all objects of
// the host.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/HostApplication.h"
#include "host/include/HostSuites.h"
#include "platform/Window.h"
#include "support/TempFolder.h"

class HostTest : public testing::Test {
 public:
  void SetUp() override;
  void TearDown() override;

  static std::string RecorderBundle();
  std::string InFolder(const std::string& name) const { return folder_ / name; }
  // Copies a sample document to the test's folder, under its own or another name. Returns the path.
  std::string Sample(const std::string& name, const std::string& as = "") const;
  std::string Write(const std::string& name, const std::string& content) const;
  static std::string Read(const std::string& path) { return test_support::TempFolder::Content(path); }
  std::set<std::string> FilesInFolder() const { return folder_.Names(); }
  int32_t Open(const std::string& path);  // expects success

  // Returns the calls of the plug-in and the windows since the last call, one line each, without the documents' folder.
  std::vector<std::string> TakeEvents() { return std::exchange(events, {}); }
  // Returns the current document as the plug-in sees it: "ID name", "ID untitled" or "none", with "*" at the end if it
  // is dirty.
  std::string Current() const;

  host::HostApplication application;
  std::vector<std::string> events;
  std::vector<std::string> problems;
  // What the plug-in does beyond recording. An event's code comes as its name.
  std::function<host_sdk::SPErr(const std::string& event)> onEvent;
  std::function<host_sdk::SPErr(const std::string& selector, host_sdk::SPMessageData*)> onMessage;
  std::function<void(platform::Window&)> onOrder;

 private:
  test_support::TempFolder folder_, configuration_;
};
