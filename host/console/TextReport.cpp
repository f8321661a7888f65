// The report as text: a document's name, a line for each thing about it, and a summary at the end.
#include <cstdio>

#include "host/console/Report.h"
#include "platform/PlainText.h"

namespace console {

namespace {

constexpr int kLabelWidth = 11;

std::string Counted(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Joined(const std::vector<std::string>& names, const char* none) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text.empty() ? none : text;
}

class TextReport : public Report {
 public:
  void Note(const std::string& file, const std::string& line) override {
    Head(file);
    Row("", line);
  }
  void Listing(const std::vector<std::string>& lines) override {
    for (const std::string& line : lines) std::printf("%s\n", platform::OneLine(line).c_str());
    head_.clear();
    std::fflush(stdout);
  }
  void Finish() override;

 private:
  void WriteOpened(const OpenedReport& opened) override;
  void WriteSaving(const std::string& file, const std::vector<std::string>& atRisk) override {
    Head(file);
    Row("at risk", "identification of " + Joined(atRisk, "") + ": not active now, so the save can take it out");
  }
  void WriteSaved(const std::string& file, const std::vector<std::string>& slug,
                  const std::vector<std::string>& lost) override {
    Head(file);
    Row("saved", slug.empty() ? "no identification of fonts" : "identification of " + Joined(slug, ""));
    if (!lost.empty()) Row("lost", "identification of " + Joined(lost, ""));
  }
  void WriteClosed(const std::string& file, const std::vector<std::string>& deactivated) override {
    Head(file);
    Row("given back", Joined(deactivated, "none"));
  }
  void WriteError(const std::string& file, const std::string& message) override {
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", platform::OneLine(file).c_str(), platform::OneLine(message).c_str());
  }

  // Prints the document's name, unless the lines above are about it, too.
  void Head(const std::string& file) {
    if (file == head_) return;
    std::printf("%s%s\n", head_.empty() ? "" : "\n", platform::OneLine(file).c_str());
    head_ = file;
  }
  static void Row(const char* label, const std::string& text) {
    std::printf("  %-*s %s\n", kLabelWidth, label, platform::OneLine(text).c_str());
    std::fflush(stdout);
  }

  std::string head_;
};

void TextReport::WriteOpened(const OpenedReport& opened) {
  Head(opened.file);
  if (opened.named.empty() && !opened.readers.empty()) {
    Row("readers", Joined(opened.readers, ""));
  } else {
    Row("names", Joined(opened.named, "no fonts"));
  }
  if (opened.named.empty() && opened.activated.empty()) return;
  Row("active", Joined(opened.active, "none"));
  const char* label = "activated";
  if (opened.activated.empty()) Row(label, "none");
  for (const ActivatedFont& font : opened.activated) {
    Row(label, font.name + "  " + font.file);
    Row("", "  " + font.why);
    label = "";
  }
  Row("missing", Joined(opened.missing, "none"));
}

void TextReport::Finish() {
  const Tally& tally = Counts();
  const std::string problems =
      Errors() == 0 ? "no problems" : Counted(static_cast<size_t>(Errors()), "problem", "problems");
  std::printf("%s%s: %s named, %zu active already, %zu activated, %zu missing; %s\n", head_.empty() ? "" : "\n",
              Counted(tally.documents, "document", "documents").c_str(), Counted(tally.named, "font", "fonts").c_str(),
              tally.active, tally.activated, tally.missing, problems.c_str());
  std::fflush(stdout);
}

}  // namespace

std::unique_ptr<Report> MakeTextReport() { return std::make_unique<TextReport>(); }

}  // namespace console
