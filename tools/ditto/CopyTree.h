// Copying a file, or what is in a folder into another folder. Thread: the one that handles the signals.
#pragma once

#include "tools/ditto/Options.h"
#include "tools/ditto/Report.h"

namespace corvane::ditto {

/// Copies `options.source` to `options.destination`: a file to that path or into that folder; a folder's
/// contents into that folder, which is made when missing. What is there already is replaced by what has the
/// same name, file by file; the rest stays. Whatever could not be copied is reported, and the rest is copied.
void copyTree(const Options& options, Report& report);

}  // namespace corvane::ditto
