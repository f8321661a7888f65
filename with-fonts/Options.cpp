#include "with-fonts/Options.h"

namespace with_fonts {

namespace {

std::vector<platform::Option> OptionTable(Options& options) {
  return {
      {"-n, --dry-run", "", "only say which fonts would be activated", &options.dryRun},
      {"--no-run", "", "activate the fonts of documents and wait for Ctrl-C; no program is run", &options.noRun},
      {"--keep", "", "leave the fonts active at the end; with --no-run, end at once", &options.keep},
      {"--release", "", "give back all fonts that were kept", &options.release},
      {"--watch", "", "activate the fonts of documents in folders while programs use them, until Ctrl-C",
       &options.watch},
      {"--identify", "", "store in each document that the program saves which exact fonts it uses", &options.identify},
      {"--private", "", "show the fonts to this program alone; the desktop does not change", &options.isPrivate},
      {"--library", "FOLDER", "a folder with your fonts, from now on; may be repeated", &options.library},
      {"--state", "FOLDER", "the state folder of another font manager than your own", &options.state},
      {"--json", "", "write one JSON object a line for each document", &options.json},
      {"-q, --quiet", "", "write nothing but errors", &options.quiet},
      {"--completion", platform::kShells, "print what this shell reads to complete the words of the program",
       &options.completion},
      {"--manual", "", "print the page of the manual", &options.manual},
      {"--version", "", "print the version", &options.version},
      {"-h, --help", "", "print this help", &options.help},
  };
}

std::string Contradiction(const Options& options) {
  if (options.IsAboutItself()) return "";
  if (options.release) {
    return options.words.empty() ? "" : "--release takes no program and no document; it gives back all that was kept";
  }
  if (options.watch && (options.isPrivate || options.keep || options.noRun || options.dryRun)) {
    return "--watch can't be combined with --private, --keep, --no-run and --dry-run";
  }
  if (options.watch) return options.words.empty() ? "no folder named; see --help" : "";
  if (options.isPrivate && options.keep)
    return "--keep and --private exclude each other: kept fonts are for all programs";
  if (options.identify && !options.RunsProgram()) return "--identify needs a program, whose saving it waits for";
  if (!options.words.empty()) return "";
  return options.noRun || options.dryRun ? "no document named; see --help" : "no program named; see --help";
}

// The sections of the manual after the options.
constexpr const char* kNotes =
    ".SH PROGRAMS THAT ARE RUNNING ALREADY\n"
    "Some programs pass the document to a running instance and end at once. Then the fonts stay until that instance\n"
    "ends, while with-fonts itself returns. After the program's end with-fonts looks for processes of the same user\n"
    "that have one of the documents open, that run the program's file or, if that is a script, a program in the\n"
    "script's own folder, or that the program has started and left behind. Services that programs start for the whole\n"
    "session, such as dbus-daemon, do not count.\n"
    ".SH PROGRAMS IN A SANDBOX\n"
    "Programs of Flatpak and Snap see the fonts that are linked into your font folder, if font files and folder are\n"
    "on one file system. A line names each font that such a program can't see.\n"
    ".SH IDENTIFICATION\n"
    "With\n"
    ".B \\-\\-identify\n"
    "a document that the program has saved gets data by which exactly these font files are found again, on another\n"
    "day or another machine. It is written into the document's XMP metadata, once nobody has the file open, and the\n"
    "document keeps its date. Kinds of documents without such metadata stay as they are.\n"
    ".SH WATCHED FOLDERS\n"
    "With\n"
    ".B \\-\\-watch\n"
    "the fonts of a document are activated when a program opens it, and given back when the program ends. Most\n"
    "programs close a document as soon as they have read it. If a program has closed it before it was noticed,\n"
    "nobody knows which one it was, and the fonts stay for a minute.\n"
    ".SH FILES\n"
    "The library and all state are in the state folder, by default ~/.local/state/velorant/desktop. Its first library\n"
    "is the folder ~/Fonts;\n"
    ".B nexctl library add\n"
    "adds others.\n"
    ".SH EXIT STATUS\n"
    "That of the program. 127 if there is no such program, 126 if it cannot be run, 2 for a wrong option. If a signal\n"
    "ended the program, with-fonts ends by the same signal.\n";

}  // namespace

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  std::string problem =
      platform::ParseOptions(OptionTable(options), arguments, options.words, platform::WordOrder::kLast);
  return problem.empty() ? Contradiction(options) : problem;
}

std::string HelpText() {
  constexpr size_t kColumn = 20;
  Options none;
  return "usage: with-fonts [OPTION ...] PROGRAM [ARGUMENT ...]\n"
         "       with-fonts --no-run|--dry-run [OPTION ...] DOCUMENT ...\n"
         "       with-fonts --watch [OPTION ...] FOLDER ...\n"
         "Activates the fonts of the documents among the arguments, runs the program, and gives the fonts back at its end.\n"
         "\n" +
         platform::HelpLines(OptionTable(none), kColumn) +
         "\nExit status: that of the program; 127 there is no such program, 126 it cannot be run, 2 an option is wrong.\n"
         "Without a program: 0 all fonts were found, 1 some are missing or something failed.\n";
}

std::string CompletionText(const std::string& shell) {
  Options none;
  return platform::Completion(shell, "with-fonts", OptionTable(none));
}

std::string ManualPage() {
  Options none;
  return ".TH WITH-FONTS 1\n"
         ".SH NAME\n"
         "with-fonts \\- run a program with the fonts of its documents\n"
         ".SH SYNOPSIS\n"
         ".B with-fonts\n"
         "[OPTION ...] PROGRAM [ARGUMENT ...]\n"
         ".br\n"
         ".B with-fonts\n"
         "\\-\\-no\\-run|\\-\\-dry\\-run [OPTION ...] DOCUMENT ...\n"
         ".br\n"
         ".B with-fonts\n"
         "\\-\\-watch [OPTION ...] FOLDER ...\n"
         ".SH DESCRIPTION\n"
         "Each argument that is an existing document, as a path or as a file:// address, is read. Fonts that it needs and\n"
         "that are not active are looked up in the library of the font manager and activated. When programs can use them,\n"
         "one line for each document is written to standard error, and the program is run with the same arguments.\n"
         "Signals are passed on to it. At its end the fonts are given back, except those that others use, too.\n"
         ".PP\n"
         "A font that is missing is never replaced. The line names the nearest fonts of the library as a suggestion: by\n"
         "family, by families that fontconfig knows to have the same widths, or by what the document says about the font's\n"
         "looks, such as its serifs and the widths of its letters.\n"
         ".SH OPTIONS\n" +
         platform::ManualLines(OptionTable(none)) + kNotes;
}

}  // namespace with_fonts
