// The plug-in with a fake host, a fake agent and a fake user interface, and a clock that stands still.
#pragma once

#include <filesystem>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "Documents/AllTrackedDocuments.h"
#include "Readers/XMPFontMetadata.h"
#include "photoshop/AutoSuite.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "platform/Clock.h"
#include "support/PluginFixture.h"
#include "support/TestHost.h"

using Lines = std::vector<std::string>;

class HostFixture : public fakes::PluginFixture {
 protected:
  static constexpr double kNow = 1'700'000'000;

  HostFixture() {
    AllTrackedDocuments::ResetForTesting();
    ResetDocumentEventsForTesting();
    PhotoshopFontUtils::ResetForTesting();
    sSPBasic = &fakes::TestHost::Basic();
    platform::Clock::SetDriven(kNow);
    EXPECT_EQ(InitializeGlyphsureXMP(), 0);
  }
  ~HostFixture() override {
    TerminateGlyphsureXMP();
    AllTrackedDocuments::ResetForTesting();
    PIUSuitesRelease();
    EXPECT_EQ(app.Objects(), 0u) << "objects of the host are left";
    EXPECT_EQ(host::AcquiredSuites(), 0u) << "suites of the host are left";
    sSPBasic = nullptr;
    platform::Clock::UseSystemTime();
  }

  // Connects the plug-in and makes it ready.
  void MakeReady() {
    Connect();
    ui->TakeShown();
    trace.clear();
  }

  // Writes a document whose bytes name these fonts. Returns its path.
  std::string WriteDocument(const std::string& name, const Lines& fonts) {
    std::string bytes = "8BPS";
    for (const std::string& font : fonts) {
      bytes += "/FontSet [ << /Name (\xFE\xFF";
      for (const char c : font) bytes += std::string(1, '\0') + c;
      bytes += ") >> ]";
    }
    return folder.Write(name, bytes);
  }

  std::string Sample(const std::string& name) const {
    const std::string path = folder / name;
    std::filesystem::copy_file(SOURCE_DIR "/samples/" + name, path, std::filesystem::copy_options::overwrite_existing);
    return path;
  }

  static void SendOpen(const std::string& path) {
    const fakes::GivenDescriptor descriptor;
    if (!path.empty()) descriptor.Put(host::kKeyTarget, host::AliasData::OfPath(path));
    OpenEvent(0, descriptor.Get(), 0, nullptr);
  }
  static void SendMake(host_sdk::FourCharCode objectClass = host::kClassDocument) {
    const host::ObjectValue made{objectClass, std::make_shared<const host::DescriptorData>()};
    MakeEvent(0, fakes::GivenDescriptor(host::kKeyNew, made).Get(), 0, nullptr);
  }
  // Notifies of a save as the host does: with the document's ID, or without.
  static void SendSave(bool withID = true) {
    const fakes::GivenDescriptor descriptor(withID ? host::kKeyDocumentID : host::kKeyTarget, 1);
    SaveEvent(0, descriptor.Get(), 0, nullptr);
  }
  static void SendClose() { CloseEvent(0, nullptr, 0, nullptr); }

  // Opens a document in front and sends its open event. Returns its path.
  std::string Open(const std::string& name, const Lines& fonts) {
    const std::string path = WriteDocument(name, fonts);
    app.Add(path);
    SendOpen(path);
    return path;
  }
  static OneTrackedDocument& FirstTracked() { return *AllTrackedDocuments::GetDocumentList().at(0); }

  // Returns the tracked documents as "NAME HANDLE", in order, separated by commas. An untitled one is "-".
  static std::string Tracked() {
    Lines lines;
    for (const auto& document : AllTrackedDocuments::GetDocumentList()) {
      const std::string name = std::filesystem::path(document->GetDocumentFilePath()).filename().string();
      lines.push_back((name.empty() ? "-" : name) + " " + std::to_string(document->GetDocumentHandle()));
    }
    return Joined(lines);
  }
  // Returns the IDs of the fonts that the agent holds for the plug-in.
  std::string Held() const {
    std::string ids;
    for (const auto& [id, font] : agent.fonts) {
      if (font.isHeld) ids += (ids.empty() ? "" : " ") + std::to_string(id);
    }
    return ids;
  }
  // Returns what the user was shown since the last call, separated by commas.
  std::string Shown() { return Joined(ui->TakeShown()); }
  static std::string Joined(const Lines& lines) {
    std::string all;
    for (const std::string& line : lines) all += (all.empty() ? "" : ", ") + line;
    return all;
  }
  static Lines Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
  }

  fakes::TestHost app;
};
