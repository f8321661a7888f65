// TXMPFiles: reads all metadata of a file when it is opened, and writes all of it when it is closed. Only the XMP
// worker, and code that knows nothing of metadata (platform/LayeredPacket.h), touches the bytes of a document.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "platform/FileBytes.h"
#include "platform/Files.h"
#include "platform/LayeredPacket.h"
#include "platform/Trace.h"
#include "platform/XMP.h"
#include "platform/XMPComparison.h"
#include "platform/XMPFormat.h"
#include "platform/XMPLibrary.h"
#include "platform/XMPPacketLimits.h"
#include "platform/XMPWorker.h"

namespace platform {

struct TXMPFiles::State {
  bool isOpen = false, isForUpdate = false, scans = false;
  std::string path;
  XMPFormat format = XMPFormat::kOther;
  bool canGrow = false;
  std::string original;  // metadata of the file; empty if it has none
  std::string wanted;    // metadata to write; empty if none was put
  std::string fitting;   // metadata that fits, as the worker said
};

namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
  ReportProblem(path + ": " + what);
  throw XMP_Error(0, path + ": " + what);
}

// Reading takes a few milliseconds, and scanning much less than this. What takes longer practically never ends.
uint32_t MostSeconds(const std::string& path) {
  constexpr uint64_t kAnyFile = 5, kBytesInSecond = 32u << 20;
  struct stat info;
  const uint64_t size = stat(path.c_str(), &info) == 0 ? static_cast<uint64_t>(info.st_size) : 0;
  return static_cast<uint32_t>(kAnyFile + size / kBytesInSecond);
}

XMPAnswer Ask(XMPQuestion question, const std::string& path, bool scans, const std::string& packet,
              XMPMessage& answer) {
  const std::string absolute = std::filesystem::absolute(path).string();
  const XMPMessage request{static_cast<uint32_t>(question), MostSeconds(path), scans, absolute, packet};
  std::string problem;
  if (!XMPWorker::Shared().Ask(request, answer, &problem)) Fail(path, problem);
  const auto kind = static_cast<XMPAnswer>(answer.kind);
  if (kind == XMPAnswer::kTooLarge) Fail(path, "its metadata is too large");
  return kind;
}

void RefuseExcess(const std::string& path, const std::string& excess) {
  if (!excess.empty()) Fail(path, "its metadata " + excess);
}

// Reads the metadata; returns false if the library cannot open the file.
bool Read(const std::string& path, bool scans, XMPMessage& answer) {
  // The library takes seconds for some thousand properties, so spare it a packet that is refused afterwards.
  std::string packet;
  if (FindXMPFormat(path) == XMPFormat::kLayered && FindLayeredPacket(path, packet)) {
    RefuseExcess(path, DescribeExcess(packet, PacketDamage::kIsTolerated));
  }
  switch (Ask(XMPQuestion::kRead, path, scans, "", answer)) {
    case XMPAnswer::kDone: break;
    case XMPAnswer::kNotOpened: return false;
    default: Fail(path, "its metadata can't be read (error " + std::to_string(answer.number) + " of the XMP library)");
  }
  RefuseExcess(path, DescribeExcess(answer.packet));
  return true;
}

PropertyMap PropertiesOf(const std::string& packet) {
  const MetaHandle meta(packet.empty() ? nullptr : xmp_new(packet.data(), packet.size()));
  return meta ? ListProperties(meta.get()) : PropertyMap();
}

std::string WithWrapper(const std::string& packet) {
  const MetaHandle meta(xmp_new(packet.data(), packet.size()));
  StringBuffer wrapped;
  const bool isDone = meta && xmp_serialize(meta.get(), wrapped.Get(), XMP_SERIAL_USECOMPACTFORMAT, 0);
  return isDone ? wrapped.Text() : "";
}

void Check(const std::string& path, const std::error_code& error) {
  if (error) throw XMP_Error(0, path + ": " + DescribeError(error));
}

Splice PlanLayered(const std::string& path, const std::string& packet) {
  Splice splice;
  std::string problem;
  if (!PlanLayeredPacket(path, WithWrapper(packet), splice, &problem)) throw XMP_Error(0, problem);
  return splice;
}

void StageLayered(const std::string& path, const Splice& splice, StagedFile& copy) {
  struct stat info;
  std::error_code error;
  const Descriptor file = OpenRegularFile(path, info, error);
  Check(path, error);
  const auto size = static_cast<uint64_t>(info.st_size);
  Check(path,
        copy.StagePieces(path, file.Get(), {{"", 0, splice.at}, {splice.bytes, splice.at + splice.old.size(), size}}));
}

void StageByLibrary(const std::string& path, XMPFormat format, bool scans, const std::string& packet,
                    StagedFile& copy) {
  const std::string name = std::string("document") + ExtensionOf(format);
  Check(path, copy.StageCopy(path, path, name.c_str()));
  XMPMessage answer;
  const XMPAnswer kind = Ask(XMPQuestion::kPut, copy.TemporaryPath(), scans, packet, answer);
  if (kind == XMPAnswer::kDone) return;
  throw XMP_Error(static_cast<int>(answer.number), path + ": its metadata can't be written (error " +
                                                       std::to_string(answer.number) + " of the XMP library)");
}

// For some files the library reports success but loses data, so read back what was written and what was there before.
void CheckWritten(const std::string& path, const std::string& written, bool scans, const PropertyMap& original,
                  const PropertyMap& wanted) {
  XMPMessage answer;
  const bool isRead = Read(written, scans, answer);
  const std::string lost = FindLostProperty(original, wanted, PropertiesOf(answer.packet));
  if (isRead && lost.empty()) return;
  throw XMP_Error(0, path + ": the metadata that was written cannot be read back: " + lost);
}

// Writes the metadata in its old place: a few kilobytes, however large the document is.
void PatchLayered(const std::string& path, const Splice& splice, const PropertyMap& original,
                  const PropertyMap& wanted) {
  Check(path, PatchFile(path, splice.at, splice.old, splice.bytes));
  try {
    CheckWritten(path, path, false, original, wanted);
  } catch (const XMP_Error&) {
    Check(path, PatchFile(path, splice.at, splice.bytes, splice.old));
    throw;
  }
}

}  // namespace

bool TXMPFiles::Initialize() { return TXMPMeta::Initialize(); }
void TXMPFiles::Terminate() { TXMPMeta::Terminate(); }

TXMPFiles::TXMPFiles() : state_(std::make_unique<State>()) {}
TXMPFiles::~TXMPFiles() = default;

bool TXMPFiles::OpenFile(const char* path, uint32_t format, XMP_OptionBits options) {
  if (format != kXMP_UnknownFile) throw XMP_Error(0, "only kXMP_UnknownFile is supported");
  state_ = std::make_unique<State>();
  State& state = *state_;
  state.path = path;
  state.isForUpdate = (options & kXMPFiles_OpenForUpdate) != 0;
  state.scans = (options & kXMPFiles_OpenUsePacketScanning) != 0;
  if (CheckReadable(path) || (state.isForUpdate && access(path, W_OK) != 0)) return false;
  if (const std::error_code error = FinishInterruptedWrite(path)) Fail(path, DescribeError(error));
  if (!state.scans) state.format = FindXMPFormat(path);
  if (!state.scans && state.format == XMPFormat::kOther) return false;
  XMPMessage answer;
  // Most documents that are searched have no packet. The worker would answer the same, later.
  const bool isEmpty = state.scans && !MayHavePacket(path);
  if (!isEmpty && !Read(path, state.scans, answer)) return false;
  state.original = std::move(answer.packet);
  state.canGrow = answer.number != 0;
  state.isOpen = true;
  return true;
}

bool TXMPFiles::GetXMP(TXMPMeta* meta) {
  if (!state_->isOpen) throw XMP_Error(0, "no file is open");
  if (state_->original.empty()) return false;
  *meta = TXMPMeta(state_->original);
  return true;
}

bool TXMPFiles::CanPutXMP(const TXMPMeta& meta) {
  State& state = *state_;
  if (!state.isOpen || !state.isForUpdate) return false;
  if (state.canGrow) return true;
  std::string packet = meta.Serialize();
  if (packet == state.fitting) return true;
  XMPMessage answer;
  if (Ask(XMPQuestion::kCanPut, state.path, state.scans, packet, answer) != XMPAnswer::kDone) return false;
  state.fitting = std::move(packet);
  return true;
}

void TXMPFiles::PutXMP(const TXMPMeta& meta) {
  if (!state_->isOpen) throw XMP_Error(0, "no file is open");
  if (!CanPutXMP(meta)) throw XMP_Error(0, state_->path + ": there is no room for the metadata");
  state_->wanted = meta.Serialize();
}

void TXMPFiles::CloseFile() {
  const State done = std::move(*std::exchange(state_, std::make_unique<State>()));
  if (done.wanted.empty()) return;
  const PropertyMap original = PropertiesOf(done.original), wanted = PropertiesOf(done.wanted);
  if (wanted == original) return;  // do not write if nothing is new
  StagedFile copy;
  if (done.format == XMPFormat::kLayered) {
    const Splice splice = PlanLayered(done.path, done.wanted);
    if (splice.old.size() == splice.bytes.size()) return PatchLayered(done.path, splice, original, wanted);
    StageLayered(done.path, splice, copy);
  } else {
    StageByLibrary(done.path, done.format, done.scans, done.wanted, copy);
  }
  CheckWritten(done.path, copy.TemporaryPath(), done.scans, original, wanted);
  Check(done.path, copy.Commit());
}

}  // namespace platform
