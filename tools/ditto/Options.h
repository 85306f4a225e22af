// The command line. Thread: main (getopt keeps state).
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace corvane::ditto {

enum class Operation { copy, create, extract };

struct Options {
  Operation operation = Operation::copy;
  bool oneFileSystem = false;      ///< folders of another device are not descended into
  bool keepParent = false;         ///< the archive's root is the source folder itself, not its contents
  bool extendedAttributes = true;  ///< copied along
  bool accessControlLists = true;  ///< copied along
  std::size_t threads = 0;         ///< that compress; 0: as many as are of use
  bool verbose = false;            ///< one line for each thing that is copied
  std::string source;
  std::string destination;
};

/// Nothing when the arguments of main() are none that the command understands.
[[nodiscard]] std::optional<Options> parseOptions(int count, char* arguments[]);

/// How the command is used; ends with a newline.
[[nodiscard]] const char* usage();

}  // namespace corvane::ditto
