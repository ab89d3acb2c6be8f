/// @file
/// The interactive prompt: editing of lines, history, completion.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "session/session.h"

struct editline;
struct history;

namespace onu {

class LineEditor {
 public:
  /// @param[in] terminal where the prompt is shown
  LineEditor(Session& session, FILE* terminal);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// The next line without its end, or nothing at the end of the input.
  std::optional<std::string> read();

 private:
  static unsigned char CompleteWord(editline* editor, int character);

  Session& session_;
  FILE* terminal_;
  editline* editor_;
  history* history_;
};

}  // namespace onu
