#include "host/DocumentOperations.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "host/MissingFonts.h"
#include "host/TypeIDs.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

namespace host {

namespace {

std::string NoSuchDocument(int32_t id) { return "Document " + std::to_string(id) + " is not open"; }

// What a document keeps of its file and its content.
void TakeOver(const std::string& path, const DocumentContent& content, Document& document) {
  document.path = path;
  document.file = platform::Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  document.format = content.format;
  document.textProblem = content.textProblem;
  document.savedFonts = content.fontNames;
}

// The document's content as it is to be written: read afresh, since others write metadata into the file while it is open.
// Of a file that was deleted meanwhile, the content is still there behind the descriptor.
std::string NewContent(const Document& document, DocumentFormat format, DocumentContent& content) {
  std::string problem;
  if (document.path.empty()) {
    MakeContent(format, content);
  } else if (platform::FileExists(document.path) || !document.file) {
    problem = ReadDocument(document.path, content);
  } else {
    problem = ReadDocument("/proc/self/fd/" + std::to_string(document.file.Get()), content);
  }
  return problem.empty() ? AddTexts(document.Title(), document.addedFonts, content) : problem;
}

}  // namespace

std::string DocumentOperations::Open(const std::string& path, int32_t* id) {
  if (const Document* open = documents_.FindByFile(path)) {
    if (id) *id = open->id;
    documents_.BringToFront(open->id);
    return "";
  }
  DocumentContent content;
  std::string problem = ReadDocument(path, content);
  if (!problem.empty()) return problem;
  Document read;
  TakeOver(ResolvedPath(path), content, read);
  content = {};  // a large file is not held while the plug-in reads it too
  const Document& document = documents_.Add(std::move(read));
  const int32_t added = document.id;
  const AliasData alias = AliasData::OfPath(document.path);
  if (id) *id = added;

  const std::vector<std::string> missing = MissingFonts(document.savedFonts);
  if (!missing.empty()) {
    auto window = ShowMissingFontsWindow(missing);
    if (Document* shown = documents_.Find(added)) shown->missingFontsWindow = std::move(window);
  }
  DescriptorData descriptor;
  descriptor.Put(kKeyTarget, alias);
  notifiers_.Notify(kEventOpen, descriptor);
  return "";
}

int32_t DocumentOperations::Make() {
  const int32_t id = documents_.Add({}).id;
  DescriptorData descriptor;
  descriptor.Put(kKeyNew, ObjectValue{kClassDocument, std::make_shared<const DescriptorData>()});
  notifiers_.Notify(kEventMake, descriptor);
  return id;
}

std::string DocumentOperations::Edit(int32_t id, const std::string& fontName) {
  Document* document = documents_.Find(id);
  if (!document) return NoSuchDocument(id);
  if (!fontName.empty()) {
    if (!document->textProblem.empty()) return document->path + ": " + document->textProblem;
    if (!platform::IsValidUTF8(fontName)) return document->Title() + ": the font name is no UTF-8 text";
    document->addedFonts.push_back(fontName);
  }
  document->isDirty = true;
  documents_.BringToFront(id);
  return "";
}

std::string DocumentOperations::Save(int32_t id) {
  const Document* document = documents_.Find(id);
  if (!document) return NoSuchDocument(id);
  if (document->path.empty()) return document->Title() + ": has no file yet; save it under a name";
  return WriteTo(id, document->path, document->format);
}

std::string DocumentOperations::SaveAs(int32_t id, const std::string& path) {
  const Document* document = documents_.Find(id);
  if (!document) return NoSuchDocument(id);
  const Document* other = documents_.FindByFile(path);
  if (other && other != document) return path + ": is open as another document";
  if (other == document) return Save(id);  // under another spelling of its own name
  const DocumentFormat format = FormatOfExtension(path);
  const bool isLayered = format == DocumentFormat::kPSD || format == DocumentFormat::kPSB;
  if (document->path.empty() && !isLayered) return path + ": a new document is saved as .psd or .psb";
  if (!document->path.empty() && format != document->format) {
    return path + ": " + document->Title() + " cannot be saved in another format";
  }
  return WriteTo(id, ResolvedPath(path), format);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): see the declaration
std::string DocumentOperations::WriteTo(int32_t id, std::string path, DocumentFormat format) {
  documents_.BringToFront(id);
  Document* document = documents_.Find(id);
  if (document->isBeingSaved) return path + ": is being saved";
  // A file is replaced, which the rights of its folder would allow.
  if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) {
    return path + ": " + platform::DescribeError({errno, std::generic_category()});
  }
  DocumentContent content;
  std::string problem = NewContent(*document, format, content);
  if (!problem.empty()) return problem;
  const auto written = static_cast<long>(document->addedFonts.size());
  platform::StagedFile file;
  if (const std::error_code error = file.Stage(path, content.bytes))
    return path + ": " + platform::DescribeError(error);
  content.bytes = {};

  document->isBeingSaved = true;
  NotifySave(id, path);
  const std::error_code error = file.Commit();
  document = documents_.Find(id);
  if (document && !error) {
    TakeOver(path, content, *document);
    // Text that was added meanwhile is still to be saved.
    document->addedFonts.erase(document->addedFonts.begin(), document->addedFonts.begin() + written);
    document->isDirty = !document->addedFonts.empty();
  }
  // Also after a failure: who counts notifications in pairs must not take the next first one for a second.
  NotifySave(id, path);
  if ((document = documents_.Find(id))) document->isBeingSaved = false;
  return error ? path + ": " + platform::DescribeError(error) : "";
}

void DocumentOperations::NotifySave(int32_t id, const std::string& path) {
  DescriptorData descriptor;
  descriptor.Put(kKeyIn, AliasData::OfPath(path));
  descriptor.Put(kKeyDocumentID, id);
  notifiers_.Notify(kEventSave, descriptor);
}

std::string DocumentOperations::Close(int32_t id) {
  if (!documents_.Find(id)) return NoSuchDocument(id);
  documents_.Remove(id);
  notifiers_.Notify(kEventClose, {});
  return "";
}

}  // namespace host
