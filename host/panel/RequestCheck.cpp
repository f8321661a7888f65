#include "host/panel/RequestCheck.h"

#include <algorithm>
#include <optional>

namespace panel {

namespace {

constexpr size_t kLongestTarget = 8192;
constexpr std::string_view kFilesFolder = "files/";

Decision Refuse(unsigned status, const char* reason) { return {Wanted::kNothing, "", status, reason}; }

bool AreEqualInConstantTime(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  unsigned char difference = 0;
  for (size_t i = 0; i < a.size(); ++i) difference |= static_cast<unsigned char>(a[i] ^ b[i]);
  return difference == 0;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Returns nothing for a malformed escape and for a NUL.
std::optional<std::string> Unescape(std::string_view text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '%') {
      const int high = i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
      const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
      if (low < 0) return std::nullopt;
      c = static_cast<char>(high * 16 + low);
      i += 2;
    }
    if (c == '\0') return std::nullopt;
    plain += c;
  }
  return plain;
}

// An empty segment, "." or "..": such a path has other names.
bool IsRoundabout(std::string_view path) {
  for (size_t start = 0; start <= path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string_view segment = path.substr(start, end - start);
    if (segment.empty() || segment == "." || segment == "..") return true;
    start = end + 1;
  }
  return false;
}

// `path` is below the token, unescaped.
Decision Choose(std::string_view path, bool isUpgrade) {
  if (isUpgrade) {
    return path == "events" ? Decision{Wanted::kEvents, ""} : Refuse(404, "a WebSocket where there is none");
  }
  if (path.empty()) return {Wanted::kPageFile, "index.html"};
  if (IsRoundabout(path)) return Refuse(404, "a path that leaves its folder");
  if (path.starts_with(kFilesFolder)) {
    return {Wanted::kFile, "/" + std::string(path.substr(kFilesFolder.size()))};
  }
  if (path.find('/') != path.npos) return Refuse(404, "no such folder");
  return {Wanted::kPageFile, std::string(path)};
}

}  // namespace

std::string PageOrigin(const ServerIdentity& server) { return "http://127.0.0.1:" + std::to_string(server.port); }

std::string PageAddress(const ServerIdentity& server) { return PageOrigin(server) + "/" + server.token + "/"; }

Decision CheckRequest(const RequestParts& request, const ServerIdentity& server) {
  const std::string origin = PageOrigin(server);
  if (request.host != std::string_view(origin).substr(sizeof "http://" - 1)) return Refuse(403, "another host name");
  // A browser leaves the origin out of ordinary requests of the page itself, but never of a WebSocket.
  if (request.isUpgrade ? request.origin != origin : !request.origin.empty() && request.origin != origin) {
    return Refuse(403, "another origin");
  }
  std::string_view target = request.target;
  const size_t tokenEnd = target.find('/', 1);
  if (!target.starts_with('/') || tokenEnd == target.npos ||
      !AreEqualInConstantTime(target.substr(1, tokenEnd - 1), server.token)) {
    return Refuse(404, "no token, or a wrong one");
  }
  if (request.method != "GET") return Refuse(405, "another method than GET");
  if (target.size() > kLongestTarget) return Refuse(414, "too long a path");
  const std::optional<std::string> path = Unescape(target.substr(tokenEnd + 1));
  return path ? Choose(*path, request.isUpgrade) : Refuse(400, "a malformed path");
}

}  // namespace panel
