// The record of a font for the socket: a flat object of strings, with the keys of font records.
#pragma once

#include "agent/fonts/FontTable.h"
#include "agent/include/AgentCalls.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

// Where a font is, for panels: kDesktopLocation for files of libraries.
uint32_t LocationOf(const Font& font);
inline constexpr uint32_t kDesktopLocation = 3, kSystemLocation = 4, kWebLocation = 10;
// The name for people: family and style, without the style "Regular". UTF-8, at most 512 bytes.
std::string DisplayName(const FontFace& face);
// `workgroup` is that of the font.
agent_protocol::Record MakeFontRecord(const Font& font, const Workgroup& workgroup,
                                      agent_protocol::AgentActivationState state);
// Its numbers and flags are decimal text, as in font records.
agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup);

}  // namespace agent
