#include "bench/MailText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane::bench {
namespace {

constexpr std::size_t kWords = 6000;
constexpr std::size_t kLineLength = 76;
constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::array<std::string_view, 40> kSyllables{
    "an", "be", "ca",  "de", "er", "fi", "gen", "ha", "in", "jo", "ka", "le", "mi",  "no",
    "or", "pe", "qui", "re", "st", "te", "un",  "ve", "wi", "ex", "yo", "za", "ing", "tion",
    "ly", "é",  "ö",   "ñ",  "ск", "ть", "ов",  "会", "議", "の", "μέ", "ous"};
constexpr std::array<std::string_view, 6> kSenders{
    "Anna Müller <anna@example.org>", "Zoë Brontë <zoe@example.net>",  "Łukasz Żak <lukasz@example.pl>",
    "山田太郎 <yamada@example.jp>",   "Иван Петров <ivan@example.ru>", "Ops <ops@example.com>"};

std::string base64(std::string_view bytes) {
  std::string text;
  std::uint32_t bits = 0;
  std::size_t column = 0;
  for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
    for (std::size_t k = 0; k < 3; ++k) bits = bits << 8 | static_cast<unsigned char>(bytes[i + k]);
    for (int shift = 18; shift >= 0; shift -= 6) text += kBase64[bits >> shift & 63];
    if ((column += 4) >= kLineLength) {
      text += '\n';
      column = 0;
    }
  }
  return text + '\n';
}

}  // namespace

std::uint64_t Random::next() {
  std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31);
}

// Doubled until it is enough or chance says so: whole numbers only, for the same bytes everywhere.
std::size_t Random::size(std::size_t least, std::size_t most) {
  std::size_t doublings = 0;
  while (least << (doublings + 1) <= most) ++doublings;
  const std::size_t base = least << below(doublings + 1);
  return std::min(most, base + below(base));
}

MailText::MailText(std::uint64_t seed) : random_(seed) {
  // The vocabulary is the same for every seed.
  Random language(7);
  for (std::size_t i = 0; i < kWords; ++i) {
    std::string& made = words_.emplace_back();
    const std::size_t syllables = 1 + language.below(i < 100 ? 2 : 4);
    for (std::size_t k = 0; k < syllables; ++k) made += kSyllables[language.below(kSyllables.size())];
  }
}

const std::string& MailText::word() { return words_[random_.size(1, kWords) - 1]; }

std::string MailText::letters(std::size_t count) {
  std::string text;
  while (text.size() < count) text += kBase64[random_.below(kBase64.size())];
  return text;
}

std::string MailText::prose(std::size_t size) {
  std::string text;
  std::size_t lineStart = 0;
  while (text.size() < size) {
    text += word();
    if (random_.oneIn(9)) text += random_.oneIn(3) ? "." : ",";
    const bool full = text.size() - lineStart > kLineLength;
    text += full ? '\n' : ' ';
    if (full) lineStart = text.size();
    if (full && random_.oneIn(6)) text += "\n> ";
  }
  return text + "\n";
}

std::string MailText::picture(std::size_t size) {
  std::string bytes;
  bytes.reserve(size + 8);
  while (bytes.size() < size) {
    for (std::uint64_t eight = random_.next(), i = 0; i < 8; ++i, eight >>= 8)
      bytes += static_cast<char>(eight);
  }
  return bytes;
}

std::string MailText::database(std::size_t size) {
  std::string bytes;
  for (std::uint64_t row = 1; bytes.size() < size; ++row) {
    for (int shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(row >> shift & 255);
    bytes += picture(8) + prose(random_.size(8, 128));
    bytes.append(random_.below(40), '\0');
  }
  return bytes;
}

std::string MailText::headers(std::size_t number) {
  const auto day = std::to_string(1 + random_.below(28));
  const std::string date = day + " Mar 2026 1" + std::to_string(random_.below(10)) + ":" +
                           std::to_string(10 + random_.below(50)) + ":07 +0100\n";
  std::string text = "Return-Path: <bounce-" + std::to_string(random_.next() % 1000000) + "@example.org>\n";
  for (std::size_t hop = 2 + random_.below(3); hop > 0; --hop) {
    text += "Received: from mx" + std::to_string(random_.below(40)) +
            ".example.net (mx.example.net [192.0.2." + std::to_string(random_.below(256)) +
            "])\n\tby mail.example.org (Postfix) with ESMTPS id " + letters(11) +
            "\n\tfor <anna@example.org>; " + date;
  }
  if (random_.oneIn(2)) {
    text +=
        "DKIM-Signature: v=1; a=rsa-sha256; c=relaxed/relaxed; d=example.org; s=mail;\n\tbh=" + letters(43) +
        "=;\n\th=From:To:Subject:Date:Message-ID;\n\tb=" + letters(342) + "==\n";
  }
  return text + "From: " + std::string(kSenders[random_.below(kSenders.size())]) +
         "\nTo: Anna Müller <anna@example.org>\nSubject: " + word() + " " + word() + " " + word() +
         "\nMessage-ID: <" + letters(22) + "." + std::to_string(number) + "@example.org>\nDate: " + date +
         "MIME-Version: 1.0\n";
}

std::string MailText::page(const std::string& text) {
  std::string page =
      "<html><head><meta charset=\"utf-8\"><style>p { margin: 0 0 1em }</style></head><body>\n";
  for (std::size_t at = 0; at < text.size(); at += 300) {
    page +=
        "<table width=\"100%\" cellpadding=\"0\" cellspacing=\"0\" border=\"0\"><tr><td style=\"padding: " +
        std::to_string(random_.below(32)) + "px; font-family: Helvetica, sans-serif\"><p>" +
        text.substr(at, 300) + "</p><img src=\"https://example.org/open/" + letters(24) +
        ".gif\" width=\"1\" height=\"1\"></td></tr></table>\n";
  }
  return page + "</body></html>\n";
}

std::string MailText::attachment() {
  const bool isText = random_.oneIn(5);
  const std::size_t size = random_.size(2000, 120000);
  return "Content-Type: " +
         std::string(isText ? "text/csv; name=\"Büro.csv\"" : "image/jpeg; name=\"Büro.jpg\"") +
         "\nContent-Transfer-Encoding: base64\n\n" + base64(isText ? prose(size) : picture(size));
}

std::string MailText::message(std::size_t number) {
  const std::string edge = "\n--=_part_" + letters(16);
  const std::string body = prose(random_.size(250, 6000));
  std::string text = headers(number);
  const std::size_t kind = random_.below(20);
  if (kind < 9) return text + "Content-Type: text/plain; charset=utf-8\n\n" + body;
  text += "Content-Type: multipart/mixed; boundary=\"" + edge.substr(3) + "\"\n" + edge +
          "\nContent-Type: text/plain; charset=utf-8\n\n" + body + edge;
  if (kind < 17) text += "\nContent-Type: text/html; charset=utf-8\n\n" + page(body) + edge;
  if (kind >= 16) text += "\n" + attachment() + edge;
  return text + "--\n";
}

}  // namespace corvane::bench
