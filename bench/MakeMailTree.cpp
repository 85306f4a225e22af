// make-mail-tree FOLDER MESSAGES [SEED]: fills FOLDER with a mail folder as Apple Mail keeps it: one file a
// message, in nested mailboxes, plain and multipart with attachments, with subjects, senders and mailbox
// names in several scripts. The same arguments give the same bytes on every machine.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "process/Files.h"

namespace {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
  }
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(next() % limit); }

  template <std::size_t N>
  std::string_view oneOf(const std::array<std::string_view, N>& items) {
    return items[below(N)];
  }

 private:
  std::uint64_t state_;
};

constexpr std::array<std::string_view, 32> kWords{
    "the",    "meeting", "on",       "Monday",  "was",    "moved", "to",     "room",
    "please", "find",    "attached", "our",     "report", "about", "travel", "budget",
    "thanks", "and",     "regards",  "I",       "will",   "call",  "you",    "später",
    "demain", "mañana",  "большое",  "спасибо", "会議",   "資料",  "γεια",   "σας"};
constexpr std::array<std::string_view, 6> kSenders{
    "Anna Müller <anna@example.org>", "Zoë Brontë <zoe@example.net>",  "Łukasz Żak <lukasz@example.pl>",
    "山田太郎 <yamada@example.jp>",   "Иван Петров <ivan@example.ru>", "Ops <ops@example.com>"};
constexpr std::array<std::string_view, 6> kMailboxes{"INBOX.mbox",
                                                     "Sent Messages.mbox",
                                                     "Archiv.mbox/Persönlich.mbox",
                                                     "Archiv.mbox/Travail & équipe.mbox",
                                                     "旅行.mbox/2026.mbox",
                                                     "Deleted Messages.mbox"};
constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string sentence(Random& random, std::size_t words) {
  std::string text;
  for (std::size_t i = 0; i < words; ++i) {
    if (i > 0) text += i % 12 == 0 ? "\n" : " ";
    text += random.oneOf(kWords);
  }
  return text + ".\n";
}

// Attachments are mostly compressed already: random letters stand for them.
std::string attachment(Random& random, std::size_t lines) {
  std::string text;
  for (std::size_t line = 0; line < lines; ++line) {
    for (int column = 0; column < 76; ++column) text += kBase64[random.below(kBase64.size())];
    text += '\n';
  }
  return text;
}

std::string multipart(Random& random, const std::string& body) {
  const std::string edge = "=_part_" + std::to_string(random.next() % 1000000);
  return "Content-Type: multipart/mixed; boundary=\"" + edge + "\"\n\n--" + edge +
         "\nContent-Type: text/plain; charset=utf-8\n\n" + body + "\n--" + edge +
         "\nContent-Type: image/jpeg; name=\"Büro.jpg\"\nContent-Transfer-Encoding: base64\n\n" +
         attachment(random, 20 + random.below(400)) + "--" + edge + "--\n";
}

std::string message(Random& random, std::size_t number) {
  const std::string body = sentence(random, 30 + random.below(300));
  const std::string head = "From: " + std::string(random.oneOf(kSenders)) +
                           "\nTo: Anna Müller <anna@example.org>\n" + "Subject: " + sentence(random, 5) +
                           "Message-ID: <" + std::to_string(number) + "@example.org>\nMIME-Version: 1.0\n";
  const bool plain = random.below(5) != 0;
  const std::string text =
      head + (plain ? "Content-Type: text/plain; charset=utf-8\n\n" + body : multipart(random, body));
  return std::to_string(text.size()) + "\n" + text +
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
         "version=\"1.0\"><dict><key>flags</key><integer>" +
         std::to_string(random.below(9000000)) + "</integer></dict></plist>\n";
}

bool writeMessages(const std::string& folder, std::size_t count, Random& random) {
  for (std::size_t number = 1; number <= count; ++number) {
    const std::string mailbox = folder + "/V9/" + std::string(random.oneOf(kMailboxes)) + "/Data/" +
                                std::to_string(number / 1000) + "/Messages";
    corvane::makeFolders(mailbox);
    const std::string path = mailbox + "/" + std::to_string(number) + ".emlx";
    std::ofstream file(path, std::ios::binary);
    file << message(random, number);
    if (!file.flush()) {
      std::fprintf(stderr, "make-mail-tree: cannot write %s\n", path.c_str());
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: make-mail-tree FOLDER MESSAGES [SEED]\n");
    return EXIT_FAILURE;
  }
  Random random(argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1);
  const bool written = writeMessages(argv[1], std::strtoull(argv[2], nullptr, 10), random);
  return written ? EXIT_SUCCESS : EXIT_FAILURE;
}
