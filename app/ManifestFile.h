// A manifest as a property list. Pure; thread: any.
#pragma once

#include "app/PropertyLists.h"
#include "script/RunRecord.h"

namespace corvane {

struct CalendarDate {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
};

/// `today` is its "Date", as day/month/year, "Clients" as a list of one name, "Language" as a number.
[[nodiscard]] PropertyListDictionary manifestDictionary(const Manifest& manifest, const CalendarDate& today);

}  // namespace corvane
