#include "host/console/Terminal.h"

#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>

#include "host/console/Complete.h"
#include "host/console/PlainText.h"
#include "platform/RunLoop.h"

namespace console {

namespace {

constexpr int kHistoryLength = 500;
constexpr double kForEver = 1e9;  // seconds

// Lets the loop go on until a byte of input is there; false at the end of the input. Byte by byte, so that what follows
// is left to whoever reads next.
bool ReadByte(char& byte) {
  platform::RunLoop& loop = platform::RunLoop::Main();
  pollfd input{STDIN_FILENO, POLLIN, 0};
  const auto isReady = [&] { return poll(&input, 1, 0) > 0; };
  loop.WatchDescriptor(STDIN_FILENO, [] {});
  loop.RunUntil(isReady, kForEver);
  loop.UnwatchDescriptor(STDIN_FILENO);
  ssize_t got = 0;
  do {
    got = read(STDIN_FILENO, &byte, 1);
  } while (got < 0 && errno == EINTR);
  return got == 1;
}

bool ReadPlainLine(std::string& line) {
  line.clear();
  char byte = 0;
  bool any = false;
  while (ReadByte(byte)) {
    any = true;
    if (byte == '\n') return true;
    line.push_back(byte);
  }
  return any;
}

}  // namespace

struct Terminal::State {
  std::function<std::vector<std::string>()> openDocuments;
  EditLine* editor = nullptr;  // null if the input is no terminal
  History* history = nullptr;
  bool isEditing = false;

  static State* Of(EditLine* editor) {
    void* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return static_cast<State*>(self);
  }
  static char* Prompt(EditLine*) {
    static char sPrompt[] = "> ";
    return sPrompt;
  }
  static int GetCharacter(EditLine*, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int);
};

// One UTF-8 character as the editor wants it. 1 read, 0 end of the input.
int Terminal::State::GetCharacter(EditLine*, wchar_t* character) {
  char byte = 0;
  if (!ReadByte(byte)) return 0;
  const auto first = static_cast<unsigned char>(byte);
  const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
  auto code = static_cast<uint32_t>(more == 0 ? first : first & (0x3F >> more));
  for (int i = 0; i < more && ReadByte(byte); ++i) code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
  *character = static_cast<wchar_t>(code);
  return 1;
}

unsigned char Terminal::State::Complete(EditLine* editor, int) {
  const LineInfo* info = el_line(editor);
  const std::string_view upToCursor(info->buffer, static_cast<size_t>(info->cursor - info->buffer));
  const Candidates candidates = CompleteLine(upToCursor, Of(editor)->openDocuments());
  if (candidates.words.empty()) return CC_ERROR;
  std::string text = CommonStart(candidates.words);
  const std::string_view present = upToCursor.substr(candidates.start);
  const bool isFolder = text.ends_with('/');
  if (candidates.words.size() == 1 && !isFolder) text += " ";
  if (text != present && text.size() >= present.size()) {
    el_deletestr(editor, static_cast<int>(CountCharacters(present)));  // it shows bytes and deletes characters
    el_insertstr(editor, text.c_str());
    return CC_REFRESH;
  }
  std::fputs("\n", stderr);
  for (const std::string& word : candidates.words) std::fprintf(stderr, "%s  ", word.c_str());
  std::fputs("\n", stderr);
  return CC_REDISPLAY;
}

Terminal::Terminal(std::function<std::vector<std::string>()> openDocuments) : state_(std::make_unique<State>()) {
  state_->openDocuments = std::move(openDocuments);
  if (!isatty(STDIN_FILENO)) return;
  std::setlocale(LC_CTYPE, "C.UTF-8");  // the editor counts characters; everything here is UTF-8
  // Standard output is the report's alone: it may go to a file or another program.
  state_->editor = el_init("host", stdin, stderr, stderr);
  state_->history = history_init();
  if (!state_->editor || !state_->history) return;
  HistEvent event;
  history(state_->history, &event, H_SETSIZE, kHistoryLength);
  history(state_->history, &event, H_SETUNIQUE, 1);
  el_set(state_->editor, EL_CLIENTDATA, state_.get());
  el_set(state_->editor, EL_PROMPT, &State::Prompt);
  el_set(state_->editor, EL_EDITOR, "emacs");
  el_set(state_->editor, EL_SIGNAL, 1);
  el_set(state_->editor, EL_HIST, history, state_->history);
  el_set(state_->editor, EL_GETCFN, &State::GetCharacter);
  el_wset(state_->editor, EL_ADDFN, L"complete", L"complete a word", &State::Complete);  // el_set copies and leaks them
  el_set(state_->editor, EL_BIND, "^I", "complete", nullptr);
}

Terminal::~Terminal() {
  if (state_->editor) el_end(state_->editor);
  if (state_->history) history_end(state_->history);
}

bool Terminal::HasUser() const { return state_->editor != nullptr; }

bool Terminal::ReadCommand(std::string& line) {
  if (!state_->editor) return ReadPlainLine(line);
  int length = 0;
  state_->isEditing = true;
  el_set(state_->editor, EL_PREP_TERM, 1);  // before the prompt shows, or a quick Ctrl-D would be the terminal's own
  const char* text = el_gets(state_->editor, &length);
  state_->isEditing = false;
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

bool Terminal::Ask(const std::string& prompt, std::string& line) {
  if (state_->isEditing) el_set(state_->editor, EL_PREP_TERM, 0);
  std::fputs(prompt.c_str(), stderr);
  const bool isRead = ReadPlainLine(line);
  if (state_->isEditing) {
    el_set(state_->editor, EL_PREP_TERM, 1);
    el_set(state_->editor, EL_REFRESH);
  }
  return isRead;
}

}  // namespace console
