// A manifest as a property list. Pure; thread: any.
#pragma once

#include "app/PropertyLists.h"
#include "script/RunRecord.h"

namespace corvane {

/// "Date" as day/month/year, "Clients" as a list of one name, "Language" as a number.
[[nodiscard]] PropertyListDictionary manifestDictionary(const Manifest& manifest);

}  // namespace corvane
