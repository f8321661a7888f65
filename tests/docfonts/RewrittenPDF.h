// A PDF in another form of storage, with the same pages.
#pragma once

#include <string>

enum class PDFForm { kObjectStreams, kLinear, kEncrypted, kLocked };  // locked: reading it takes a password

// Throws std::exception.
void RewritePDF(const std::string& from, const std::string& to, PDFForm form);
