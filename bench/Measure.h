// Running commands and what that costs. Thread: one at a time.
#pragma once

#include <string>
#include <vector>

namespace corvane::bench {

struct Cost {
  double wall = 0;    // seconds
  double cpu = 0;     // seconds, of all its processes
  double memory = 0;  // the most that one process had at a time, in MiB
  double size = 0;    // of what it made, in MB
  bool succeeded = false;
};

/// Runs a line of the shell; `product` is the file that it makes, replaced if there is one.
[[nodiscard]] Cost run(const std::string& line, const std::string& product);

/// Of each number the median; it has succeeded when all have.
[[nodiscard]] Cost median(const std::vector<Cost>& costs);

struct Contestant {
  std::string name;
  std::string line;
  std::vector<Cost> costs;
};

enum class Cache { warm, cold };

/// Runs all in turns, `rounds` times, and prints their medians and how they relate to those of the first one.
/// `cold`: the system's cache is emptied before each, which only the superuser may do.
void compare(std::vector<Contestant> contestants, const std::string& product, int rounds,
             Cache cache = Cache::warm);

}  // namespace corvane::bench
