// make-mail-tree FOLDER MESSAGES [SEED [KIND]]: fills FOLDER with a mail folder. KIND "small", which is meant
// unless another is given, is what Apple Mail keeps: one file a message in nested mailboxes. "mixed" has
// large attachments beside the messages and an index of them, "large" a file for each mailbox. The same
// arguments give the same bytes on every machine.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "bench/MailText.h"
#include "process/Files.h"

namespace {

using corvane::bench::MailText;

constexpr std::array<std::string_view, 6> kMailboxes{"INBOX.mbox",
                                                     "Sent Messages.mbox",
                                                     "Archiv.mbox/Persönlich.mbox",
                                                     "Archiv.mbox/Travail & équipe.mbox",
                                                     "旅行.mbox/2026.mbox",
                                                     "Deleted Messages.mbox"};

bool write(const std::string& folder, const std::string& name, const std::string& bytes) {
  if (!corvane::makeFolders(folder)) return false;
  std::ofstream file(folder + "/" + name, std::ios::binary);
  file << bytes;
  if (file.flush()) return true;
  std::fprintf(stderr, "make-mail-tree: cannot write %s/%s\n", folder.c_str(), name.c_str());
  return false;
}

std::string stored(const std::string& message, MailText& text) {
  return std::to_string(message.size()) + "\n" + message +
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
         "version=\"1.0\"><dict><key>flags</key><integer>" +
         std::to_string(text.random().below(9000000)) + "</integer></dict></plist>\n";
}

bool writeMessages(const std::string& folder, std::size_t count, MailText& text) {
  for (std::size_t number = 1; number <= count; ++number) {
    const auto mailbox = std::string(kMailboxes[text.random().below(kMailboxes.size())]);
    const std::string path =
        folder + "/V9/" + mailbox + "/Data/" + std::to_string(number / 1000) + "/Messages";
    if (!write(path, std::to_string(number) + ".emlx", stored(text.message(number), text))) return false;
  }
  return true;
}

bool writeAttachments(const std::string& folder, std::size_t count, MailText& text) {
  for (std::size_t number = 1; number <= count; ++number) {
    const std::string path = folder + "/V9/INBOX.mbox/Data/Attachments/" + std::to_string(number) + "/2";
    const std::size_t size = text.random().size(50'000, 4'000'000);
    const bool isText = text.random().oneIn(4);
    if (!write(path, isText ? "Bericht.txt" : "Foto é.jpg", isText ? text.prose(size) : text.picture(size)))
      return false;
  }
  return true;
}

bool writeMailboxes(const std::string& folder, std::size_t messages, MailText& text) {
  for (const std::string_view mailbox : kMailboxes) {
    if (!corvane::makeFolders(folder + "/" + std::string(mailbox))) return false;
    std::ofstream file(folder + "/" + std::string(mailbox) + "/mbox", std::ios::binary);
    for (std::size_t number = 1; number <= messages / kMailboxes.size(); ++number)
      file << "From - Mon Mar  2 2026\n" << text.message(number) << "\n";
    if (!file.flush()) return false;
  }
  return true;
}

bool fill(const std::string& folder, std::size_t messages, std::string_view kind, MailText& text) {
  const bool isMixed = kind == "mixed";
  if (kind == "large") return writeMailboxes(folder, messages, text);
  if (!isMixed && kind != "small") return false;
  return writeMessages(folder, messages, text) &&
         (!isMixed || (writeAttachments(folder, messages / 80, text) &&
                       write(folder + "/V9/MailData", "Envelope Index", text.database(messages * 1500))));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: make-mail-tree FOLDER MESSAGES [SEED [small|mixed|large]]\n");
    return EXIT_FAILURE;
  }
  MailText text(argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1);
  const bool written = fill(argv[1], static_cast<std::size_t>(std::strtoull(argv[2], nullptr, 10)),
                            argc > 4 ? argv[4] : "small", text);
  if (!written) std::fprintf(stderr, "make-mail-tree: cannot make %s\n", argv[1]);
  return written ? EXIT_SUCCESS : EXIT_FAILURE;
}
