// The record of fonts that were left active on request: their IDs, in a file of the state folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace with_fonts {

std::string KeptFontsFile(const std::string& stateFolder);

// Adds fonts to the record, which is replaced atomically. Returns an empty text, or one line; then it is unchanged.
std::string AddKeptFonts(const std::string& file, const std::vector<uint32_t>& fontIDs);

// Gives all fonts of the state folder's record back, and removes the record. Starts the agent for that if it does not
// run; this process gets a thread until the call ends. Returns an empty text, or one line; then the record stays.
// `count` receives the number of fonts; not null.
std::string ReleaseKeptFonts(const std::string& stateFolder, const std::string& agentProgram, size_t* count);

}  // namespace with_fonts
