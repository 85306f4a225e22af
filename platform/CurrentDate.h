// The calendar's day. Thread: any.
#pragma once

#include "app/ManifestFile.h"

namespace corvane {

/// Today in the user's time zone.
[[nodiscard]] CalendarDate currentDate();

}  // namespace corvane
