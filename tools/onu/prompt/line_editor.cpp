/// @file
/// The prompt by libedit.
#include "prompt/line_editor.h"

#include <algorithm>
#include <histedit.h>
#include <string_view>

#include "prompt/completion.h"

namespace onu {

namespace {

constexpr int kHistorySize = 1000;

char* Prompt(EditLine* /*editor*/) {
  static char prompt[] = "onu> ";
  return prompt;
}

/// What all candidates begin with.
std::string CommonPrefix(const Words& candidates) {
  std::string prefix = candidates.front();
  for (const std::string& candidate : candidates) {
    const auto [end, other] = std::ranges::mismatch(prefix, candidate);
    prefix.erase(end, prefix.end());
  }
  return prefix;
}

/// What a completed word is followed by: nothing where more of the word may come.
std::string_view Ending(const std::string& word) {
  return word.ends_with('/') || word.ends_with('=') ? "" : " ";
}

}  // namespace

LineEditor::LineEditor(Session& session, FILE* terminal)
    : session_(session),
      terminal_(terminal),
      editor_(el_init("onu", stdin, terminal, stderr)),
      history_(history_init()) {
  HistEvent event = {};
  history(history_, &event, H_SETSIZE, kHistorySize);
  history(history_, &event, H_SETUNIQUE, 1);
  el_set(editor_, EL_PROMPT, Prompt);
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_SIGNAL, 1);
  el_set(editor_, EL_HIST, history, history_);
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_ADDFN, "complete", "Completes the word", CompleteWord);
  el_set(editor_, EL_BIND, "\t", "complete", nullptr);
}

LineEditor::~LineEditor() {
  el_end(editor_);
  history_end(history_);
}

std::optional<std::string> LineEditor::read() {
  int length = 0;
  const char* text = el_gets(editor_, &length);
  if (text == nullptr || length <= 0) {
    return std::nullopt;
  }
  std::string line(text, static_cast<std::size_t>(length));
  line.erase(line.find_last_not_of("\r\n") + 1);
  if (!line.empty()) {
    HistEvent event = {};
    history(history_, &event, H_ENTER, line.c_str());
  }
  return line;
}

unsigned char LineEditor::CompleteWord(editline* editor, int /*character*/) {
  LineEditor* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  const LineInfo* line = el_line(editor);
  const Completion completion = Complete(
      self->session_, {line->buffer, static_cast<std::size_t>(line->cursor - line->buffer)});
  if (completion.candidates.empty()) {
    return CC_REFRESH_BEEP;
  }
  const std::string common = CommonPrefix(completion.candidates);
  const bool only = completion.candidates.size() == 1;
  if (!only && common.size() <= completion.word.size()) {
    const std::string list = "\n" + Join(completion.candidates, "  ") + "\n";
    std::fputs(list.c_str(), self->terminal_);
    return CC_REDISPLAY;
  }
  const std::string text = common + std::string(only ? Ending(common) : "");
  el_deletestr(editor, static_cast<int>(completion.word.size()));
  return el_insertstr(editor, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

}  // namespace onu
