// The script text that quits a client before its section and starts it again afterwards.
// Pure functions of their arguments; any thread; neither fails.
#pragma once

#include <string>

#include "script/Client.h"

namespace corvane {

/// What decides how applications are quit, beside the client itself.
struct QuitChoice {
  bool quitEntourage = true;   ///< else it is set offline, and online again
  int minorSystemVersion = 0;  ///< decides what the address book is called
};

/// `script` with the client's quit text (`isHeader`) or relaunch text appended. A null client stands for a
/// name that no row of the table has: nothing is quit, and only the announcement of the relaunch is made.
/// With `withAddressBook` the header quits the address book too, whatever the client.
[[nodiscard]] std::string addAppleScriptTo(std::string script, const Client* client, bool isHeader,
                                           bool withAddressBook, const QuitChoice& choice);

}  // namespace corvane
