#include "platform/XMPDepth.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/Descriptor.h"

namespace platform {

namespace {

constexpr int kDeepest = 1000;
constexpr std::array<std::string_view, 3> kBeginnings = {"<?xpacket begin", "<x:xmpmeta", "<rdf:RDF"};
constexpr size_t kLongestBeginning = kBeginnings[0].size();

// Follows XML, byte by byte, in any encoding in which ASCII is itself but for zeros.
class NestingMeter {
 public:
  void Take(char c) {
    if (c == '\0') return;
    recent_ = {recent_[1], recent_[2], c};
    switch (state_) {
      case State::kText:
        if (c == '<') state_ = State::kAngle;
        break;
      case State::kAngle: TakeFirst(c); break;
      case State::kTag:
        if (c == '"' || c == '\'') {
          quote_ = c;
          state_ = State::kQuote;
        } else if (c == '>') {
          if (recent_[1] == '/') Leave();
          state_ = State::kText;
        }
        break;
      case State::kQuote:
        if (c == quote_) state_ = State::kTag;
        break;
      case State::kDeclaration:
        if (c == '-' || c == '[') end_ = c == '-' ? "-->" : "]]>";
        state_ = State::kSkipped;
        break;
      case State::kSkipped:
        if (std::string_view(recent_.data(), recent_.size()).ends_with(end_)) state_ = State::kText;
        break;
    }
  }
  bool IsTooDeep() const { return deepest_ > kDeepest; }
  bool HasEnded() const { return deepest_ > 0 && depth_ == 0 && state_ == State::kText; }

 private:
  enum class State { kText, kAngle, kTag, kQuote, kDeclaration, kSkipped };

  void TakeFirst(char c) {
    end_ = c == '?' ? "?>" : ">";
    state_ = c == '!' ? State::kDeclaration : State::kSkipped;
    if (c == '/') Leave();
    if (c == '/' || c == '?' || c == '!') return;
    state_ = State::kTag;
    deepest_ = std::max(deepest_, ++depth_);
  }
  void Leave() { depth_ = std::max(0, depth_ - 1); }

  State state_ = State::kText;
  char quote_ = 0;
  std::string_view end_;  // of what is skipped
  std::array<char, 3> recent_{};
  int depth_ = 0, deepest_ = 0;
};

// A file that is read from its beginning to its end through a window.
class Stream {
 public:
  explicit Stream(const std::string& path) : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

  // The bytes in the window from the present place on; empty at the end, or if the file cannot be read.
  std::string_view Window() {
    if (at_ == window_.size()) Load();
    return {window_.data() + at_, window_.size() - at_};
  }
  void Advance(size_t count) { at_ += count; }
  bool Skip(uint64_t count) {
    while (count > 0) {
      const uint64_t step = std::min<uint64_t>(count, Window().size());
      if (step == 0) return false;
      Advance(static_cast<size_t>(step));
      count -= step;
    }
    return true;
  }
  // A number, most significant byte first; 0 where the file ends.
  uint32_t Number(int width) {
    uint32_t value = 0;
    for (; width > 0 && !Window().empty(); --width) {
      value = value << 8 | static_cast<uint8_t>(Window()[0]);
      Advance(1);
    }
    return width == 0 ? value : 0;
  }

 private:
  void Load() {
    window_.resize(size_t{64} * 1024);
    at_ = 0;
    ssize_t got = 0;
    do {
      got = fd_ ? read(fd_.Get(), window_.data(), window_.size()) : 0;
    } while (got < 0 && errno == EINTR);
    window_.resize(got > 0 ? static_cast<size_t>(got) : 0);
  }

  Descriptor fd_;
  std::vector<char> window_;
  size_t at_ = 0;
};

bool IsTooDeep(Stream& stream, uint64_t size) {
  NestingMeter meter;
  for (; size > 0 && !stream.Window().empty() && !meter.IsTooDeep(); --size) {
    meter.Take(stream.Window()[0]);
    stream.Advance(1);
  }
  return meter.IsTooDeep();
}

// The metadata among the image resources, whose places the file layout of layered documents tells.
bool IsLayeredFileTooDeep(Stream& stream) {
  constexpr uint32_t kHeaderSize = 26, kMetadata = 1060;
  stream.Skip(kHeaderSize);
  stream.Skip(stream.Number(4));  // the colour mode data
  int64_t left = stream.Number(4);
  while (left >= 12 && stream.Skip(4)) {  // its signature
    const uint32_t id = stream.Number(2), nameLength = stream.Number(1) / 2 * 2 + 1;
    if (!stream.Skip(nameLength)) return false;
    const uint32_t length = stream.Number(4);
    const uint64_t padded = uint64_t{length} + length % 2;
    if (id == kMetadata && IsTooDeep(stream, length)) return true;
    if (!stream.Skip(id == kMetadata ? padded - length : padded)) return false;
    left -= static_cast<int64_t>(11 + nameLength + padded);
  }
  return false;
}

// Whether what stands here begins a packet; the bytes are passed, up to the first that no beginning has.
bool BeginsPacket(Stream& stream, std::string& passed) {
  passed.clear();
  while (passed.size() < kLongestBeginning && !stream.Window().empty()) {
    const char c = stream.Window()[0];
    if (c == '<' && !passed.empty()) return false;  // perhaps another beginning
    stream.Advance(1);
    if (c == '\0') continue;
    passed.push_back(c);
    const auto isStart = [&](std::string_view beginning) { return beginning.starts_with(passed); };
    if (std::find(kBeginnings.begin(), kBeginnings.end(), passed) != kBeginnings.end()) return true;
    if (std::none_of(kBeginnings.begin(), kBeginnings.end(), isStart)) return false;
  }
  return false;
}

bool IsAnyPacketTooDeep(Stream& stream) {
  std::string passed;
  while (!stream.Window().empty()) {
    const std::string_view window = stream.Window();
    const size_t at = window.find('<');
    stream.Advance(std::min(at, window.size()));
    if (at == std::string_view::npos || !BeginsPacket(stream, passed)) continue;
    NestingMeter meter;
    for (const char c : passed) meter.Take(c);
    for (; !meter.HasEnded() && !stream.Window().empty(); stream.Advance(1)) {
      meter.Take(stream.Window()[0]);
      if (meter.IsTooDeep()) return true;
    }
  }
  return false;
}

}  // namespace

bool IsMetadataTooDeep(const std::string& path, bool searchesPackets) {
  Stream stream(path);
  if (!searchesPackets && stream.Window().starts_with("8BPS")) return IsLayeredFileTooDeep(stream);
  return IsAnyPacketTooDeep(stream);
}

}  // namespace platform
