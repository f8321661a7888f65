// What this process has had activated and not given back. An agent that was killed forgets what its clients asked for;
// the library asks for it again on the next connection, so that the fonts of open documents do not go with the agent.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

namespace plugin_interface {

enum class HoldKind { kDocument, kPreview };

// Any thread.
class HeldFonts {
 public:
  void Add(const std::vector<uint32_t>& fontIDs, HoldKind kind);  // a document's hold outweighs a preview's
  void Remove(const std::vector<uint32_t>& fontIDs);
  void Clear();
  std::vector<uint32_t> Of(HoldKind kind) const;

 private:
  mutable std::mutex mutex_;
  std::map<uint32_t, HoldKind> fonts_;
};

}  // namespace plugin_interface
