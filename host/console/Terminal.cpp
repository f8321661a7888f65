#include "host/console/Terminal.h"

#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <optional>
#include <utility>

#include "host/ModalSession.h"
#include "host/console/Complete.h"
#include "host/console/Signals.h"
#include "platform/PlainText.h"
#include "platform/RunLoop.h"
#include "platform/TextEncoding.h"

namespace console {

namespace {

constexpr int kHistoryLength = 500;
constexpr double kForEver = 1e9;  // seconds
constexpr wchar_t kInterruptKey = 3;
constexpr wchar_t kReplacement = 0xFFFD;

// Runs the loop until the condition is true.
using RunLoopUntil = std::function<void(const std::function<bool()>&)>;

void RunInDefaultMode(const std::function<bool()>& condition) {
  platform::RunLoop::Main().RunUntil(condition, kForEver);
}

// Reads one byte, so that the rest is left for the next reader. Waits unless input is known to be ready.
std::optional<char> ReadByteNow() {
  char byte = 0;
  ssize_t got = 0;
  do {
    got = read(STDIN_FILENO, &byte, 1);
  } while (got < 0 && errno == EINTR);
  return got == 1 ? std::optional(byte) : std::nullopt;
}

}  // namespace

struct Terminal::State {
  explicit State(Signals& given) : signals(given) {}

  Signals& signals;
  std::function<std::vector<std::string>()> openDocuments;
  EditLine* editor = nullptr;  // null if the input is not a terminal
  History* history = nullptr;
  bool isEditing = false;
  bool isInterrupted = false;
  std::optional<char> unread;  // a byte that ended a malformed character
  std::string question;        // question of a box that waits for an answer

  static State* Of(EditLine* editor) {
    void* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return static_cast<State*>(self);
  }
  static char* Prompt(EditLine*) {
    static char sPrompt[] = "> ";
    return sPrompt;
  }
  static int GetCharacter(EditLine* editor, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int);
  static unsigned char Interrupt(EditLine* editor, int);

  bool AwaitInput(const RunLoopUntil& runUntil);
  std::optional<char> ReadByte(const RunLoopUntil& runUntil);
  bool ReadPlainLine(const RunLoopUntil& runUntil, std::string& line);
  void SetRaw(bool isRaw) const {
    if (editor && isEditing) el_set(editor, EL_PREP_TERM, isRaw ? 1 : 0);
  }
  void ShowAgain() const;
};

// Redraws the last line after something else has used the terminal.
void Terminal::State::ShowAgain() const {
  if (!question.empty()) {
    std::fputs(question.c_str(), stderr);
  } else if (editor && isEditing) {
    SetRaw(true);
    el_set(editor, EL_REFRESH);
  }
}

// Runs the loop until there is a byte to read or the end of the input. Returns false if a signal that ends the wait
// comes first.
bool Terminal::State::AwaitInput(const RunLoopUntil& runUntil) {
  platform::RunLoop& loop = platform::RunLoop::Main();
  pollfd input{STDIN_FILENO, POLLIN, 0};
  for (;;) {
    loop.WatchDescriptor(STDIN_FILENO, [] {});
    runUntil([&] { return signals.HasNews() || poll(&input, 1, 0) > 0; });
    loop.UnwatchDescriptor(STDIN_FILENO);
    if (signals.EndAsked() != 0 || signals.IsInterrupted()) return false;
    if (signals.TakeStop()) {
      SetRaw(false);
      signals.StopProcess();
    } else if (signals.TakeContinue()) {
      ShowAgain();
    } else if (signals.TakeResize()) {
      if (editor) el_resize(editor);
    } else {
      return true;
    }
  }
}

std::optional<char> Terminal::State::ReadByte(const RunLoopUntil& runUntil) {
  if (unread) return std::exchange(unread, std::nullopt);
  return AwaitInput(runUntil) ? ReadByteNow() : std::nullopt;
}

bool Terminal::State::ReadPlainLine(const RunLoopUntil& runUntil, std::string& line) {
  line.clear();
  bool any = false;
  while (const std::optional<char> byte = ReadByte(runUntil)) {
    any = true;
    if (*byte == '\n') return true;
    line.push_back(*byte);
  }
  return any && !signals.IsInterrupted();
}

// Reads one character for the editor. Returns 1, or 0 at the end of the input.
int Terminal::State::GetCharacter(EditLine* editor, wchar_t* character) {
  State* self = Of(editor);
  std::optional<char> byte = self->ReadByte(RunInDefaultMode);
  if (!byte) {
    // The terminal converts Ctrl-C to a signal; convert it back to a key.
    *character = kInterruptKey;
    return self->signals.EndAsked() == 0 && self->signals.TakeInterrupt() ? 1 : 0;
  }
  const auto first = static_cast<unsigned char>(*byte);
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
  std::string bytes(1, *byte);
  while (bytes.size() < length && (byte = self->ReadByte(RunInDefaultMode))) {
    if (!platform::IsContinuation(*byte)) {
      self->unread = byte;
      break;
    }
    bytes.push_back(*byte);
  }
  std::string_view rest = bytes;
  const char32_t code = platform::TakeCharacter(rest);
  *character = code == platform::kMalformed ? kReplacement : static_cast<wchar_t>(code);
  return 1;
}

unsigned char Terminal::State::Interrupt(EditLine* editor, int) {
  std::fputs("^C\n", stderr);
  Of(editor)->isInterrupted = true;
  return CC_NEWLINE;
}

unsigned char Terminal::State::Complete(EditLine* editor, int) {
  const LineInfo* info = el_line(editor);
  const std::string_view upToCursor(info->buffer, static_cast<size_t>(info->cursor - info->buffer));
  const Candidates candidates = CompleteLine(upToCursor, Of(editor)->openDocuments());
  if (candidates.words.empty()) return CC_ERROR;
  const std::string common = CommonStart(candidates.words);
  // The editor cannot contain a name that is not UTF-8, so the name is only listed.
  std::string text(platform::ValidStart(common));
  const std::string_view present = upToCursor.substr(candidates.start);
  const bool isWhole = candidates.words.size() == 1 && text == common;
  if (isWhole && !text.ends_with('/')) text += " ";
  if (text != present && text.size() >= present.size()) {
    // The editor counts characters here, not bytes.
    el_deletestr(editor, static_cast<int>(platform::CountCharacters(present)));
    el_insertstr(editor, text.c_str());
    return CC_REFRESH;
  }
  std::fputs("\n", stderr);
  for (const std::string& word : candidates.words) std::fprintf(stderr, "%s  ", platform::OneLine(word).c_str());
  std::fputs("\n", stderr);
  return CC_REDISPLAY;
}

Terminal::Terminal(Signals& signals, std::function<std::vector<std::string>()> openDocuments)
    : state_(std::make_unique<State>(signals)) {
  state_->openDocuments = std::move(openDocuments);
  if (!isatty(STDIN_FILENO)) return;
  std::setlocale(LC_CTYPE, "C.UTF-8");  // the editor counts characters; all text here is UTF-8
  // Use standard error: standard output is for the report, which may go to a file or another program.
  state_->editor = el_init("host", stdin, stderr, stderr);
  state_->history = history_init();
  if (!state_->editor || !state_->history) return;
  HistEvent event;
  history(state_->history, &event, H_SETSIZE, kHistoryLength);
  history(state_->history, &event, H_SETUNIQUE, 1);
  el_set(state_->editor, EL_CLIENTDATA, state_.get());
  el_set(state_->editor, EL_PROMPT, &State::Prompt);
  el_set(state_->editor, EL_EDITOR, "emacs");
  el_set(state_->editor, EL_SIGNAL, 0);  // the editor would end or stop the process itself; see Signals
  el_set(state_->editor, EL_HIST, history, state_->history);
  el_set(state_->editor, EL_GETCFN, &State::GetCharacter);
  // el_set would copy the names and leak them.
  el_wset(state_->editor, EL_ADDFN, L"complete", L"complete a word", &State::Complete);
  el_wset(state_->editor, EL_ADDFN, L"interrupt", L"clear the line", &State::Interrupt);
  el_set(state_->editor, EL_BIND, "^I", "complete", nullptr);
  el_set(state_->editor, EL_BIND, "^C", "interrupt", nullptr);
}

Terminal::~Terminal() {
  if (state_->editor) el_end(state_->editor);
  if (state_->history) history_end(state_->history);
}

bool Terminal::HasUser() const { return state_->editor != nullptr; }

bool Terminal::ReadCommand(std::string& line) {
  if (!state_->editor) return state_->ReadPlainLine(RunInDefaultMode, line);
  state_->signals.TakeInterrupt();  // it stopped the previous command
  const char* text = nullptr;
  int length = 0;
  do {
    state_->isInterrupted = false;
    state_->isEditing = true;
    state_->signals.SetEditing(true);
    el_set(state_->editor, EL_PREP_TERM, 1);  // before the prompt, or the terminal would handle a quick Ctrl-D
    text = el_gets(state_->editor, &length);
    state_->isEditing = false;
    state_->signals.SetEditing(false);
  } while (state_->isInterrupted);
  if (!text || length <= 0) {
    std::fputs("\n", stderr);
    return false;
  }
  line.assign(text, static_cast<size_t>(length));
  while (line.ends_with('\n')) line.pop_back();
  if (!line.empty()) {
    HistEvent event;
    history(state_->history, &event, H_ENTER, line.c_str());
  }
  return true;
}

bool Terminal::Ask(host::ModalSession& box, const std::string& prompt, std::string& line) {
  state_->SetRaw(false);
  std::fputs(prompt.c_str(), stderr);
  state_->question = prompt;
  const auto runUntil = [&box](const std::function<bool()>& condition) { box.RunUntil(condition, kForEver); };
  const bool isRead = state_->ReadPlainLine(runUntil, line);
  state_->question.clear();
  if (state_->signals.TakeInterrupt()) std::fputs("\n", stderr);
  state_->ShowAgain();
  return isRead;
}

}  // namespace console
