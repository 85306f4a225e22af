#include "tools/ditto/Options.h"

#include <getopt.h>

namespace corvane::ditto {
namespace {

enum LongOption { withoutAttributes = 256, withoutLists, accepted };

// What speaks of resource forks, quarantine and their place in an archive has nothing to act on here, where
// files have neither: accepted, so that a script for the other system runs unchanged.
constexpr option kLongOptions[] = {{"norsrc", no_argument, nullptr, withoutAttributes},
                                   {"noextattr", no_argument, nullptr, withoutAttributes},
                                   {"noacl", no_argument, nullptr, withoutLists},
                                   {"rsrc", no_argument, nullptr, accepted},
                                   {"extattr", no_argument, nullptr, accepted},
                                   {"acl", no_argument, nullptr, accepted},
                                   {"qtn", no_argument, nullptr, accepted},
                                   {"noqtn", no_argument, nullptr, accepted},
                                   {"sequesterRsrc", no_argument, nullptr, accepted},
                                   {nullptr, 0, nullptr, 0}};

bool apply(int option, Options& options) {
  switch (option) {
    case 'X':
      options.oneFileSystem = true;
      break;
    case 'v':
    case 'V':
      options.verbose = true;
      break;
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
  opterr = 0;
  // The plus ends the options at the first operand, so that a later one may begin with a hyphen.
  int option = 0;
  while ((option = getopt_long(count, arguments, "+XvV", kLongOptions, nullptr)) != -1) {
    if (!apply(option, options)) return std::nullopt;
  }
  if (count - optind != 2) return std::nullopt;
  options.source = arguments[optind];
  options.destination = arguments[optind + 1];
  if (options.source.empty() || options.destination.empty()) return std::nullopt;
  return options;
}

const char* usage() { return "usage: ditto [-XvV] [--norsrc] [--noextattr] [--noacl] SOURCE DESTINATION\n"; }

}  // namespace corvane::ditto
