// The plug-in's inside between a fake host, a fake agent and a fake user interface, at a time that stands still.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Documents/AllTrackedDocuments.h"
#include "Readers/XMPFontMetadata.h"
#include "photoshop/AutoSuite.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "platform/Clock.h"
#include "support/FakeHostSuites.h"
#include "support/PluginFixture.h"

class HostFixture : public fakes::PluginFixture {
 protected:
  static constexpr double kNow = 1'700'000'000;

  HostFixture() {
    AllTrackedDocuments::ResetForTesting();
    ResetDocumentEventsForTesting();
    PhotoshopFontUtils::ResetForTesting();
    sSPBasic = &fakes::FakeHost::Basic();
    platform::Clock::SetDriven(kNow);
    EXPECT_EQ(InitializeGlyphsureXMP(), 0);
  }
  ~HostFixture() override {
    TerminateGlyphsureXMP();
    AllTrackedDocuments::ResetForTesting();
    PIUSuitesRelease();
    EXPECT_EQ(app.objects, 0) << "objects of the host are left";
    EXPECT_EQ(app.AcquiredSuites(), 0) << "suites of the host are left";
    sSPBasic = nullptr;
    platform::Clock::UseSystemTime();
  }

  // Connected and ready for work.
  void MakeReady() {
    Connect();
    ui->TakeShown();
    trace.clear();
  }

  // A document whose bytes name these fonts; its path.
  std::string WriteDocument(const std::string& name, const std::vector<std::string>& fonts) {
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
    host_sdk::ActionDescriptor descriptor = fakes::FakeHost::AliasOf(path);
    OpenEvent(0, &descriptor, 0, nullptr);
  }
  static void SendMake(host_sdk::FourCharCode objectClass = host_sdk::Code("Dcmn")) {
    host_sdk::ActionDescriptor descriptor;
    descriptor.Put(host_sdk::Code("Nw  "), {host_sdk::kTypeObject,
                                            static_cast<int32_t>(objectClass),
                                            {},
                                            {},
                                            std::make_shared<host_sdk::ActionDescriptor>(),
                                            {}});
    MakeEvent(0, &descriptor, 0, nullptr);
  }
  // As the host tells of a save: with the document's ID, or without.
  static void SendSave(bool withID = true) {
    host_sdk::ActionDescriptor descriptor;
    if (withID) descriptor.Put(host_sdk::Code("DocI"), {host_sdk::kTypeInteger, 1, {}, {}, nullptr, {}});
    SaveEvent(0, &descriptor, 0, nullptr);
  }
  static void SendClose() { CloseEvent(0, nullptr, 0, nullptr); }

  // The tracked documents as "PATH HANDLE" with the folder left out, in order.
  std::vector<std::string> Tracked() const {
    std::vector<std::string> lines;
    for (const auto& document : AllTrackedDocuments::GetDocumentList()) {
      const std::string name = std::filesystem::path(document->GetDocumentFilePath()).filename().string();
      lines.push_back((name.empty() ? "-" : name) + " " + std::to_string(document->GetDocumentHandle()));
    }
    return lines;
  }
  // The IDs of the fonts that the agent holds for the plug-in.
  std::vector<uint32_t> Held() const {
    std::vector<uint32_t> ids;
    for (const auto& [id, font] : agent.fonts) {
      if (font.isHeld) ids.push_back(id);
    }
    return ids;
  }

  fakes::FakeHost app;
};
