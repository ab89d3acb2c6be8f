/// @file
/// Choice of what is run: a script, commands, help, a live run, or the prompt.
#include "program.h"

#include <cstdio>
#include <exception>
#include <string>
#include <unistd.h>
#include <variant>

#include "commands/command_table.h"
#include "language/script_file.h"
#include "live/live.h"
#include "options.h"
#include "prompt/prompt.h"
#include "session/console.h"
#include "session/runner.h"
#include "session/session.h"

namespace onu {

namespace {

void PrintError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
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
    ScriptFile script(*options.script);
    runner.runScript(script);
  } else if (!options.commands.empty()) {
    for (const std::string& command : options.commands) {
      if (!runner.runLine(command, "onu")) {
        break;
      }
    }
  } else {
    ScriptFile script("-");
    runner.runScript(script);
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
  Session session(sessionOptions, AllCommands(), console, [terminal](std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), terminal);
    std::fflush(terminal);
  });
  ExitStatus status = ExitStatus::Done;
  if (prompt) {
    RunPrompt(session, terminal, PrintError);
  } else {
    status = RunLines(session, options);
  }
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
