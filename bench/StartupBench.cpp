// startup-bench [ROUNDS]: how long the engine takes from its start to its first status line, and the most
// memory it needs, without and with a window; medians over the rounds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/VirtualDisplay.h"
#include "tests/system/EngineRun.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

void measure(const char* name, const std::string& display, int rounds) {
  std::vector<double> milliseconds;
  std::vector<double> megabytes;
  for (int round = 0; round < rounds; ++round) {
    EngineRun engine;
    engine.configure("");
    const auto start = Clock::now();
    engine.start(display);
    if (!engine.logs("Checking backup destination...")) continue;
    milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    if (engine.exitStatus()) megabytes.push_back(static_cast<double>(engine.peakMemory()) / 1024);
  }
  std::printf("%-9s  first status line %6.0f ms   peak memory %5.1f MiB   (%zu of %d runs)\n", name,
              median(milliseconds), median(megabytes), megabytes.size(), rounds);
}

}  // namespace
}  // namespace corvane

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 7;
  corvane::measure("headless", "", rounds);
  const corvane::VirtualDisplay display;
  corvane::measure("window", display.name(), rounds);
  return EXIT_SUCCESS;
}
