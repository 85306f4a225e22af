// A whole run without a display. Thread: main.
#pragma once

#include <functional>
#include <string>

#include "app/PropertyLists.h"
#include "script/Facts.h"

namespace corvane {

/// Performs the run and answers the program's exit status: 0 when the backup succeeded
/// or everything was uninstalled, 11 when another run is at work, 1 otherwise.
/// `announce` posts a notification by its name to other processes.
[[nodiscard]] int runHeadless(const Facts& facts, PropertyLists& propertyLists,
                              std::function<void(const std::string&)> announce);

}  // namespace corvane
