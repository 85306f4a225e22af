// Unpacking an archive. Thread: the one that handles the signals.
#pragma once

#include "tools/ditto/Options.h"
#include "tools/ditto/Report.h"

namespace corvane::ditto {

/// Unpacks the archive `options.source` into the folder `options.destination`, which is made when missing.
/// Nothing is written outside that folder, whatever the names in the archive and the links in the folder say.
/// A file replaces an earlier one only when it is complete and its check sum is right. What is refused, or
/// fails, is reported, and the rest is unpacked.
void unzip(const Options& options, Report& report);

}  // namespace corvane::ditto
