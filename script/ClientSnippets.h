// The script text that quits a client before its section and starts it again afterwards.
// Pure functions of their arguments; any thread; neither fails.
#pragma once

#include <string>

#include "script/Client.h"
#include "script/Facts.h"
#include "script/RunRecord.h"

namespace corvane {

/// `script` with the client's quit text (`isHeader`) or relaunch text appended. A null client stands for a
/// name that no row of the table has: nothing is quit, and only the announcement of the relaunch is made.
/// With `withAddressBook` the header quits the address book too, whatever the client.
[[nodiscard]] std::string addAppleScriptTo(std::string script, const Client* client, bool isHeader,
                                           bool withAddressBook, const RunRecord& record, const Facts& facts);

}  // namespace corvane
