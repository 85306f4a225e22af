// Making an archive of a file or a folder. Thread: the one that handles the signals.
#pragma once

#include "tools/ditto/Options.h"
#include "tools/ditto/Report.h"

namespace corvane::ditto {

/// Archives `options.source` as the file `options.destination`. When anything of the source could not be
/// read, or the archive not be written, everything that failed is reported and whatever had that name before
/// is left as it was: an archive with holes must not pass for a backup.
void createArchive(const Options& options, Report& report);

}  // namespace corvane::ditto
