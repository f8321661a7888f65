// Reading a document's file, and writing it anew with what was added.
#pragma once

#include <string>
#include <vector>

namespace host {

enum class DocumentFormat {
  kNone,  // no file yet
  kPSD,
  kPSB,
  kOther,  // shown and saved as it is; no text can be added
};

struct DocumentContent {
  DocumentFormat format = DocumentFormat::kNone;
  std::string bytes;
  std::vector<std::string> fontNames;  // distinct, in the order found
  std::string textProblem;             // why no text can be added; empty if it can
};

// The results below are empty or one line, "PATH: what is wrong", with the path as it is given here.

// A missing, empty or unreadable file, a folder or another thing that is no regular file, a layered document or a PDF that
// is damaged or cut off: nothing is read. A file of an extension of layered documents must be one.
std::string ReadDocument(const std::string& path, DocumentContent& content);

// Adds one text layer for each font to the content; without any it stays as it is.
std::string AddTexts(const std::string& path, const std::vector<std::string>& fontNames, DocumentContent& content);

// The content of a new document, of a format that is no other.
void MakeContent(DocumentFormat format, DocumentContent& content);

// By the extension, in any case; kNone without one.
DocumentFormat FormatOfExtension(const std::string& path);

// Absolute and without symbolic links as far as the path exists; of a file that is yet to be made, its folder must exist.
// The path as given where that fails.
std::string ResolvedPath(const std::string& path);

}  // namespace host
