#include "frameworks/VelorantPluginInterface/HeldFonts.h"

namespace plugin_interface {

void HeldFonts::Add(const std::vector<uint32_t>& fontIDs, HoldKind kind) {
  const std::lock_guard lock(mutex_);
  for (const uint32_t id : fontIDs) {
    const auto [held, isNew] = fonts_.emplace(id, kind);
    if (!isNew && kind == HoldKind::kDocument) held->second = kind;
  }
}

void HeldFonts::Remove(const std::vector<uint32_t>& fontIDs) {
  const std::lock_guard lock(mutex_);
  for (const uint32_t id : fontIDs) fonts_.erase(id);
}

void HeldFonts::Clear() {
  const std::lock_guard lock(mutex_);
  fonts_.clear();
}

std::vector<uint32_t> HeldFonts::Of(HoldKind kind) const {
  const std::lock_guard lock(mutex_);
  std::vector<uint32_t> ids;
  for (const auto& [id, held] : fonts_) {
    if (held == kind) ids.push_back(id);
  }
  return ids;
}

}  // namespace plugin_interface
