#include "tools/ditto/Options.h"

#include <getopt.h>
#include <cstdlib>

namespace corvane::ditto {
namespace {

enum LongOption { keepParent = 256, threadCount, withoutAttributes, withoutLists, accepted };

// What speaks of resource forks, quarantine and their place in an archive has nothing to act on here, where
// files have neither: accepted, so that a script for the other system runs unchanged.
constexpr option kLongOptions[] = {{"keepParent", no_argument, nullptr, keepParent},
                                   {"threads", required_argument, nullptr, threadCount},
                                   {"norsrc", no_argument, nullptr, withoutAttributes},
                                   {"noextattr", no_argument, nullptr, withoutAttributes},
                                   {"noacl", no_argument, nullptr, withoutLists},
                                   {"rsrc", no_argument, nullptr, accepted},
                                   {"extattr", no_argument, nullptr, accepted},
                                   {"acl", no_argument, nullptr, accepted},
                                   {"qtn", no_argument, nullptr, accepted},
                                   {"noqtn", no_argument, nullptr, accepted},
                                   {"sequesterRsrc", no_argument, nullptr, accepted},
                                   {nullptr, 0, nullptr, 0}};

struct Letters {
  bool create = false;
  bool extract = false;
  bool zip = false;
};

constexpr std::size_t kMostThreads = 64;

bool readThreads(const char* text, std::size_t& threads) {
  char* end = nullptr;
  threads = std::strtoul(text, &end, 10);
  return *text >= '0' && *text <= '9' && *end == '\0' && threads <= kMostThreads;
}

bool apply(int option, Options& options, Letters& letters) {
  switch (option) {
    case 'c':
      letters.create = true;
      break;
    case 'x':
      letters.extract = true;
      break;
    case 'k':
      letters.zip = true;
      break;
    case 'X':
      options.oneFileSystem = true;
      break;
    case 'v':
    case 'V':
      options.verbose = true;
      break;
    case keepParent:
      options.keepParent = true;
      break;
    case threadCount:
      return readThreads(optarg, options.threads);
    case withoutAttributes:
      options.extendedAttributes = false;
      break;
    case withoutLists:
      options.accessControlLists = false;
      break;
    case accepted:
      break;
    default:
      return false;
  }
  return true;
}

}  // namespace

std::optional<Options> parseOptions(int count, char* arguments[]) {
  Options options;
  Letters letters;
  opterr = 0;
  // The plus ends the options at the first operand, so that a later one may begin with a hyphen.
  int option = 0;
  while ((option = getopt_long(count, arguments, "+cxkXvV", kLongOptions, nullptr)) != -1) {
    if (!apply(option, options, letters)) return std::nullopt;
  }
  // Archives of the other kind (without k) are not made, and one operation excludes the other.
  if (letters.zip != (letters.create || letters.extract) || (letters.create && letters.extract)) {
    return std::nullopt;
  }
  if (letters.create) options.operation = Operation::create;
  if (letters.extract) options.operation = Operation::extract;
  if (count - optind != 2) return std::nullopt;
  options.source = arguments[optind];
  options.destination = arguments[optind + 1];
  if (options.source.empty() || options.destination.empty()) return std::nullopt;
  return options;
}

const char* usage() {
  return "usage: ditto [-XvV] [--norsrc] [--noextattr] [--noacl] SOURCE DESTINATION\n"
         "       ditto -c -k [-XvV] [--keepParent] [--threads N] SOURCE ARCHIVE\n"
         "       ditto -x -k [-vV] ARCHIVE DESTINATION\n";
}

}  // namespace corvane::ditto
