// Made-up mail: words as frequent as those of a language, headers, web pages, pictures and documents in
// base64. The same seed gives the same bytes on every machine. Thread: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace corvane::bench {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next();
  /// `limit` > 0: one of the numbers below it.
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(next() % limit); }
  /// A size between the two, small ones as often as those ten times as large.
  std::size_t size(std::size_t least, std::size_t most);
  [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }

 private:
  std::uint64_t state_;
};

class MailText {
 public:
  explicit MailText(std::uint64_t seed);

  Random& random() { return random_; }

  /// A message with its headers, as it came from the network.
  [[nodiscard]] std::string message(std::size_t number);
  /// About `size` bytes of sentences.
  [[nodiscard]] std::string prose(std::size_t size);
  /// What no program makes smaller: a picture, a film.
  [[nodiscard]] std::string picture(std::size_t size);
  /// Records of numbers and texts with empty room between them, as a mail program's index has.
  [[nodiscard]] std::string database(std::size_t size);

 private:
  [[nodiscard]] const std::string& word();
  [[nodiscard]] std::string letters(std::size_t count);
  [[nodiscard]] std::string headers(std::size_t number);
  [[nodiscard]] std::string page(const std::string& text);
  [[nodiscard]] std::string attachment();

  Random random_;
  std::vector<std::string> words_;  // the most frequent first
};

}  // namespace corvane::bench
