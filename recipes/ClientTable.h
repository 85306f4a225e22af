// Every e-mail client that can be backed up, one row each.
// The table is constant; any thread.
#pragma once

#include "script/Client.h"

namespace corvane {

[[nodiscard]] ClientTable clientTable();

}  // namespace corvane
