#include "bench/Measure.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>

extern char** environ;

namespace corvane::bench {
namespace {

using Clock = std::chrono::steady_clock;

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double middle(const std::vector<Cost>& costs, double Cost::*number) {
  std::vector<double> numbers;
  for (const Cost& cost : costs) numbers.push_back(cost.*number);
  std::sort(numbers.begin(), numbers.end());
  return numbers.empty() ? 0 : numbers[numbers.size() / 2];
}

void emptyCache() {
  ::sync();
  std::ofstream("/proc/sys/vm/drop_caches") << "3\n";
}

void print(const Contestant& contestant, const Cost& first) {
  const Cost cost = median(contestant.costs);
  if (!cost.succeeded) {
    std::printf("  %-18s failed\n", contestant.name.c_str());
    return;
  }
  std::printf("  %-18s %7.2f s %5.2f x   cpu %7.2f s %5.2f x   %6.1f MiB   %9.2f MB %6.3f\n",
              contestant.name.c_str(), cost.wall, first.wall / cost.wall, cost.cpu, first.cpu / cost.cpu,
              cost.memory, cost.size, first.size > 0 ? cost.size / first.size : 0);
}

}  // namespace

Cost run(const std::string& line, const std::string& product) {
  ::unlink(product.c_str());
  ::sync();  // nobody waits for what another wrote
  std::string text = line;
  char shell[] = "/bin/sh";
  char command[] = "-c";
  char* const arguments[] = {shell, command, text.data(), nullptr};
  const auto start = Clock::now();
  pid_t child = 0;
  Cost cost;
  if (::posix_spawn(&child, shell, nullptr, nullptr, arguments, environ) != 0) return cost;
  int status = 0;
  struct rusage used {};
  if (::wait4(child, &status, 0, &used) != child) return cost;
  cost.wall = std::chrono::duration<double>(Clock::now() - start).count();
  cost.cpu = seconds(used.ru_utime) + seconds(used.ru_stime);
  cost.memory = static_cast<double>(used.ru_maxrss) / 1024;
  struct stat made {};
  if (::stat(product.c_str(), &made) == 0 && S_ISREG(made.st_mode)) {
    cost.size = static_cast<double>(made.st_size) * 1e-6;
  }
  cost.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return cost;
}

Cost median(const std::vector<Cost>& costs) {
  const bool all = std::all_of(costs.begin(), costs.end(), [](const Cost& cost) { return cost.succeeded; });
  return {middle(costs, &Cost::wall), middle(costs, &Cost::cpu), middle(costs, &Cost::memory),
          middle(costs, &Cost::size), all};
}

void compare(std::vector<Contestant> contestants, const std::string& product, int rounds, Cache cache) {
  for (int round = 0; round < rounds; ++round) {
    for (Contestant& contestant : contestants) {
      if (cache == Cache::cold) emptyCache();
      contestant.costs.push_back(run(contestant.line, product));
    }
  }
  const Cost first = median(contestants.front().costs);
  for (const Contestant& contestant : contestants) print(contestant, first);
  std::fflush(stdout);
}

}  // namespace corvane::bench
