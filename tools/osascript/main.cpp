// Tells applications to quit, start and the like in sentences, for systems that have no such command.
#include <unistd.h>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "tools/osascript/Perform.h"
#include "tools/osascript/Script.h"

namespace {

using namespace corvane::osascript;

// The lines of the options -e; nothing when there are none, or anything else.
std::optional<std::string> scriptFrom(int count, char* arguments[]) {
  std::optional<std::string> script;
  for (int option = 0; (option = ::getopt(count, arguments, "+:e:")) != -1;) {
    if (option != 'e') return std::nullopt;
    if (!script) script.emplace();
    script->append(::optarg).append("\n");
  }
  return ::optind == count ? script : std::nullopt;
}

int complain(Range range, const char* kind, const std::string& message, int code) {
  const std::string line = std::to_string(range.begin) + ":" + std::to_string(range.end) + ": " + kind +
                           " error: " + message + " (" + std::to_string(code) + ")\n";
  std::fputs(line.c_str(), stderr);
  return 1;
}

int run(const std::string& source) {
  constexpr int kSyntaxError = -2741;
  const Script script = parseScript(source);
  if (script.problem) return complain(script.problem->range, "syntax", script.problem->message, kSyntaxError);
  for (const auto& statement : script.statements) {
    if (const auto failure = perform(statement)) {
      return complain(statement.range, "execution", failure->message, failure->code);
    }
  }
  return 0;
}

}  // namespace

int main(int count, char* arguments[]) {
  try {
    if (const auto source = scriptFrom(count, arguments)) return run(*source);
    std::fputs("usage: osascript -e statement [-e statement ...]\n", stderr);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "osascript: %s\n", problem.what());
  }
  return 1;
}
