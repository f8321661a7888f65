// The fonts that this process activated and has not deactivated. An agent that was killed forgets them, so the library
// requests them again on the next connection.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

namespace plugin_interface {

enum class HoldKind { kDocument, kDesign, kTemporary };

// Thread-safe.
class HeldFonts {
 public:
  void Add(const std::vector<uint32_t>& fontIDs, HoldKind kind);  // a document's hold replaces another
  void Remove(const std::vector<uint32_t>& fontIDs);
  void Clear();
  std::vector<uint32_t> Of(HoldKind kind) const;

 private:
  mutable std::mutex mutex_;
  std::map<uint32_t, HoldKind> fonts_;
};

}  // namespace plugin_interface
