#include "script/ShellQuoting.h"

#include <string_view>

#include "script/Text.h"

namespace corvane {
namespace {

constexpr std::string_view kEscaped = " ()&|<>;$`*?'";

}  // namespace

std::string escapeStringForTerminal(std::string text) {
  for (const char c : kEscaped) replaceAll(text, {&c, 1}, std::string{'\\', c});
  return text;
}

std::string stripEscapes(std::string text) {
  for (const char c : kEscaped) replaceAll(text, std::string{'\\', c}, {&c, 1});
  return text;
}

}  // namespace corvane
