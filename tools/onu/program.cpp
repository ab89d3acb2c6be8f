/// @file
/// Choice of what is run: a script, commands, help, a live run, or the prompt.
#include "program.h"

#include <cstdio>
#include <exception>
#include <string>
#include <unistd.h>
#include <variant>

#include "console.h"
#include "line_editor.h"
#include "live.h"
#include "options.h"
#include "runner.h"
#include "script_file.h"
#include "session.h"

namespace onu {

namespace {

void PrintError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

ExitStatus RunPrompt(Session& session, FILE* terminal) {
  Runner runner(session, PrintError, true);
  LineEditor editor(session, terminal);
  bool more = true;
  while (more) {
    const std::optional<std::string> line = editor.read();
    more = line && (runner.runLine(*line, "onu"), !session.done());
  }
  return ExitStatus::Done;
}

ExitStatus RunLines(Session& session, const Options& options) {
  if (options.live) {
    return RunLive(session, *options.live, PrintError);
  }
  Runner runner(session, PrintError, options.keepGoing);
  if (options.help) {
    Words words = {"help"};
    words.insert(words.end(), options.help->begin(), options.help->end());
    runner.runLine(JoinWords(words), "onu");
  } else if (options.script) {
    RunScriptFile(runner, *options.script);
  } else if (!options.commands.empty()) {
    for (const std::string& command : options.commands) {
      if (!runner.runLine(command, "onu")) {
        break;
      }
    }
  } else {
    RunScriptFile(runner, "-");
  }
  return runner.status();
}

ExitStatus Run(const Options& options) {
  Console console;
  FILE* terminal = console.terminal();
  const bool prompt = !options.live && !options.help && !options.script &&
                      options.commands.empty() && isatty(STDIN_FILENO) == 1;
  SessionOptions sessionOptions = options.session;
  if (prompt) {
    sessionOptions.makeTicker = MakeRealTicker;
  }
  if (options.live) {
    PrepareLive(sessionOptions, *options.live);
  }
  Session session(sessionOptions, console, [terminal](std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), terminal);
    std::fflush(terminal);
  });
  const ExitStatus status = prompt ? RunPrompt(session, terminal) : RunLines(session, options);
  if (std::ferror(terminal) != 0) {
    throw WorkFailed("cannot write to standard output");
  }
  return status;
}

}  // namespace

int RunProgram(int argc, const char* const* argv) {
  try {
    const std::variant<Options, std::string> options = ReadOptions(argc, argv);
    if (const auto* text = std::get_if<std::string>(&options)) {
      std::fputs(text->c_str(), stdout);
      return static_cast<int>(ExitStatus::Done);
    }
    return static_cast<int>(Run(std::get<Options>(options)));
  } catch (const Failure& failure) {
    PrintError(std::string("onu: ") + failure.what() + "\n");
    return static_cast<int>(failure.status());
  } catch (const std::exception& error) {
    PrintError(std::string("onu: ") + error.what() + "\n");
    return static_cast<int>(ExitStatus::WorkFailed);
  }
}

}  // namespace onu
