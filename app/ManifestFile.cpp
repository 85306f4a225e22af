#include "app/ManifestFile.h"

#include <array>
#include <cstdio>

namespace corvane {
namespace {

std::string dayMonthYear(const CalendarDate& date) {
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%02d/%02d/%04d", date.day, date.month, date.year);
  return text.data();
}

}  // namespace

PropertyListDictionary manifestDictionary(const Manifest& manifest, const CalendarDate& today) {
  return {{"Date", {dayMonthYear(today)}},
          {"Clients", {PropertyListValue::Array{{manifest.client}}}},
          {"Language", {std::int64_t{manifest.language}}}};
}

}  // namespace corvane
