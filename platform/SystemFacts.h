// Reads what a run needs to know about its machine. One source file per system. Thread: main.
#pragma once

#include "script/Facts.h"

namespace corvane {

/// Never fails: what the system does not tell is left empty.
[[nodiscard]] Facts readFacts();

}  // namespace corvane
