#include "host/DocumentOperations.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "host/MissingFonts.h"
#include "host/Problems.h"
#include "host/TypeIDs.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "platform/TextEncoding.h"
#include "platform/Trace.h"

namespace host {

namespace {

std::string NoSuchDocument(int32_t id) { return "Document " + std::to_string(id) + " is not open"; }

constexpr const char* kNoMemory = ": there is not enough memory";

std::error_code Commit(platform::StagedFile& staged) {
  try {
    return staged.Commit();
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  }
}

DescriptorData OpenDescriptor(const std::string& path) {
  DescriptorData descriptor;
  descriptor.Put(kKeyTarget, AliasData::OfPath(path));
  return descriptor;
}

DescriptorData SaveDescriptor(int32_t id, const std::string& path) {
  DescriptorData descriptor;
  descriptor.Put(kKeyIn, AliasData::OfPath(path));
  descriptor.Put(kKeyDocumentID, id);
  return descriptor;
}

// Other programs may have written the file since it was read. When the document is saved to its own file, new metadata
// is taken over, so that the save keeps it. Anything else is another document, which must not get these texts.
std::string CatchUpWithFile(Document& document, const std::string& savedAs) {
  if (document.path.empty()) return "";
  if (StateOf(document.content.file) != document.content.state) {
    return document.path + ": was changed by another program since it was opened; close it and open it again";
  }
  const FileState now = StateOf(document.path);
  if (savedAs != document.path || now == document.content.state || now == FileState()) return "";
  DocumentContent content;
  if (ReadDocument(document.path, content).empty() && ShowTheSame(document.content, content)) {
    document.content = std::move(content);
    return "";
  }
  return document.path +
         ": was replaced by another program since it was opened; save it under another name, or close it "
         "and open it again";
}

// Stages the new file and reads it, so that nothing can fail after the notification of the save.
std::string PrepareFile(const Document& document, DocumentFormat format, const std::string& path,
                        platform::StagedFile& staged, DocumentContent& content) {
  std::string problem = StageDocument(document.content, format, document.addedFonts, path, staged);
  if (!problem.empty()) return problem;
  problem = ReadDocument(staged.TemporaryPath(), content);
  return problem.empty() ? "" : path + problem.substr(staged.TemporaryPath().size());
}

// Programs that are notified of a save write the file, too: the plug-in adds metadata. If it cannot be read then, the
// next save refuses it.
void TakeOverFile(Document& document) {
  if (StateOf(document.path) == document.content.state) return;
  try {
    ReadDocument(document.path, document.content);
  } catch (const std::bad_alloc&) {
    platform::ReportProblem(document.path + kNoMemory);
  }
}

}  // namespace

template <class Operation>
std::string DocumentOperations::WithDocument(int32_t id, const Operation& operation) {
  Document* document = documents_.Find(id);
  if (!document) return NoSuchDocument(id);
  try {
    return operation(*document);
  } catch (const std::bad_alloc&) {
    document = documents_.Find(id);
    return (document ? document->Title() : "Document " + std::to_string(id)) + kNoMemory;
  }
}

std::string DocumentOperations::Open(const std::string& path, int32_t* id) {
  try {
    return OpenFile(path, id);
  } catch (const std::bad_alloc&) {
    return path + kNoMemory;
  }
}

std::string DocumentOperations::OpenFile(const std::string& path, int32_t* id) {
  if (const Document* open = documents_.FindByFile(path)) {
    if (id) *id = open->id;
    documents_.BringToFront(open->id);
    return "";
  }
  if (const std::error_code error = platform::FinishInterruptedWrite(path)) {
    return path + ": a save that was interrupted can't be finished: " + platform::DescribeError(error);
  }
  Document read;
  std::string problem = ReadDocument(path, read.content);
  if (!problem.empty()) return problem;
  read.path = ResolvedPath(path);
  const std::vector<std::string> missing = MissingFonts(read.content.fontNames);
  const DescriptorData descriptor = OpenDescriptor(read.path);
  const std::string window = read.path + ": the window \"Missing Fonts\"";
  const int32_t added = documents_.Add(std::move(read)).id;
  if (id) *id = added;

  const auto show = [&] {
    auto shown = ShowMissingFontsWindow(missing);
    if (Document* document = documents_.Find(added)) document->missingFontsWindow = std::move(shown);
  };
  try {
    if (!missing.empty() && !CallGuarded(window, show, &problem)) platform::ReportProblem(problem);
    notifiers_.Notify(kEventOpen, descriptor);
  } catch (const std::bad_alloc&) {  // it is open all the same
    platform::ReportProblem(path + kNoMemory);
  }
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
  return WithDocument(id, [&](Document& document) -> std::string {
    if (!fontName.empty()) {
      if (!document.content.textProblem.empty()) return document.path + ": " + document.content.textProblem;
      if (!platform::IsValidUTF8(fontName)) return document.Title() + ": the font name is not valid UTF-8";
      document.addedFonts.push_back(fontName);
    }
    document.isDirty = true;
    documents_.BringToFront(id);
    return "";
  });
}

std::string DocumentOperations::Save(int32_t id) {
  return WithDocument(id, [&](Document& document) {
    if (document.path.empty()) return document.Title() + ": has no file yet; save it under a name";
    const std::string path = document.path;
    return WriteTo(id, path, document.content.format);
  });
}

std::string DocumentOperations::SaveAs(int32_t id, const std::string& path) {
  return WithDocument(id, [&](Document& document) {
    if (path.empty()) return document.Title() + ": the name of the new file is empty";
    const Document* other = documents_.FindByFile(path);
    if (other == &document) return Save(id);  // another spelling of its own path
    if (other) return path + ": is open as another document";
    const DocumentFormat format = FormatOfExtension(path);
    const bool isLayered = format == DocumentFormat::kPSD || format == DocumentFormat::kPSB;
    if (document.path.empty() && !isLayered) return path + ": a new document is saved as .psd or .psb";
    // The extension may be missing, or wrong like that of the document's own file.
    const bool staysAsItIs = format == document.content.format || format == DocumentFormat::kNone;
    if (!document.path.empty() && !staysAsItIs && !HaveOneExtension(path, document.path)) {
      return path + ": " + document.Title() + " cannot be saved in another format";
    }
    return WriteTo(id, ResolvedPath(path), format);
  });
}

std::string DocumentOperations::WriteTo(int32_t id, const std::string& path, DocumentFormat format) {
  documents_.BringToFront(id);
  Document* document = documents_.Find(id);
  if (document->isBeingSaved) return path + ": is being saved";
  // Saving replaces the file, which needs only rights on its folder, so check the file's own.
  const bool isThere = faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
  if (!isThere && errno != ENOENT) return path + ": " + platform::DescribeError(platform::LastError());
  std::string problem = CatchUpWithFile(*document, path);
  if (!problem.empty()) return problem;

  const size_t written = document->addedFonts.size();
  const bool isNewFile = written > 0 || !isThere || path != document->path;
  platform::StagedFile staged;
  DocumentContent content;
  if (isNewFile) problem = PrepareFile(*document, format, path, staged, content);
  if (!problem.empty()) return problem;
  const DescriptorData descriptor = SaveDescriptor(id, path);
  std::string newPath = path;

  document->isBeingSaved = true;
  notifiers_.Notify(kEventSave, descriptor);
  const std::error_code error = isNewFile ? Commit(staged) : std::error_code();
  if ((document = documents_.Find(id)) && !error) {
    document->path = std::move(newPath);
    if (isNewFile) document->content = std::move(content);
    // Text that was added meanwhile is not saved yet.
    document->addedFonts.erase(document->addedFonts.begin(), document->addedFonts.begin() + static_cast<long>(written));
    document->isDirty = !document->addedFonts.empty();
    TakeOverFile(*document);
  }
  // Also after a failure: a plug-in that counts notifications in pairs must not take the next first one for a second.
  notifiers_.Notify(kEventSave, descriptor);
  if ((document = documents_.Find(id))) {
    document->isBeingSaved = false;
    if (!error) TakeOverFile(*document);
  }
  return error ? path + ": " + platform::DescribeError(error) : "";
}

std::string DocumentOperations::Close(int32_t id) {
  if (!documents_.Find(id)) return NoSuchDocument(id);
  documents_.Remove(id);
  notifiers_.Notify(kEventClose, {});
  return "";
}

}  // namespace host
