#include "script/Client.h"

#include <algorithm>

namespace corvane {

const Client* findClient(ClientTable table, std::string_view displayName, bool withAddressBook) {
  const auto row = std::find_if(table.begin(), table.end(), [&](const Client& client) {
    return client.displayName == displayName &&
           (!client.isAppleMail || client.withAddressBook == withAddressBook);
  });
  return row == table.end() ? nullptr : &*row;
}

}  // namespace corvane
