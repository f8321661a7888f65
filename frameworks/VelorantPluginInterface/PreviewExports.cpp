// Drawn names of fonts. The pictures come as an event.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;

TModuleErrorCode GetRenderedPNGsDirectory(FacadeHandle h, char* buffer, uint32_t size) {
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetRenderedPNGsDirectory>(h);
    return reply.code == kSuccess ? WriteText(reply.result.path, buffer, size) : reply.code;
  });
}

// The value from the panel's request says nothing to the agent. The scale is that of the smaller picture and always 1.
TModuleErrorCode RenderFontNamePreviewPNGs(FacadeHandle h, uint32_t highPriorityCount,
                                           const uint32_t* highPriorityFontIDs, uint32_t count, const uint32_t* fontIDs,
                                           uint32_t, uint32_t textSize, uint32_t width, uint32_t height, uint32_t) {
  if ((highPriorityCount > 0 && !highPriorityFontIDs) || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    return CallAgent<calls::RenderFontNamePreviewPNGs>(h, {NumbersOf(highPriorityCount, highPriorityFontIDs),
                                                           NumbersOf(count, fontIDs), textSize, width, height})
        .code;
  });
}
