// The record of fonts that were left active on request: their IDs, in a file of the state folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace with_fonts {

std::string KeptFontsFile(const std::string& stateFolder);

// Adds fonts to the record, which is replaced atomically. Returns an empty text, or one line; then it is unchanged.
std::string AddKeptFonts(const std::string& file, const std::vector<uint32_t>& fontIDs);

// Gives all fonts of the record back through the agent of platform::GetPlaces(), which must be running, and removes the
// record. Returns an empty text, or one line; then the record stays. `count` receives the number of fonts; not null.
std::string ReleaseKeptFonts(const std::string& file, size_t* count);

}  // namespace with_fonts
