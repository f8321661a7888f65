// The trace lines of the plug-in that the host reads (console/TraceRecorder.cpp), as formats for printf. The plug-in
// traces with them, so that a line and its reader cannot come apart. Each %s or number is one part of the line.
#pragma once

namespace trace_lines {

// The best file, the next best one, the document's name for the font, and the stage that decided.
inline constexpr char kPreferred[] = "Preferred '%s' over '%s' for '%s': %s";
// The document's name for the font, the chosen file, and why it was chosen.
inline constexpr char kMatched[] = "Matched '%s' with '%s': %s";
// The number of fonts. Their activation follows at once.
inline constexpr char kReadyToActivate[] = "Ready to batch-activate %d fonts";
// The document's path and the result: -43 if the document names no fonts.
inline constexpr char kFontsLookedUp[] = "CreateGlyphsureDataForDocument('%s') returned %d";
// The document's path and the result: 0x00000000 for success.
inline constexpr char kSlugWritten[] = "WriteXMPGlyphsureSlugToFile('%s') returned 0x%08x";

}  // namespace trace_lines
