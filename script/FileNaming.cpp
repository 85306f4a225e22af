#include "script/FileNaming.h"

#include <algorithm>
#include <array>

#include "script/Text.h"

namespace corvane {
namespace {

struct DateFormat {
  std::string_view name;
  std::string_view fields;
};

constexpr std::array<DateFormat, 8> kDateFormats{{
    {"DD/MM/YYYY", "%d%b%Y"},
    {"MM/DD/YYYY", "%b%d%Y"},
    {"YYYY/MM/DD", "%Y%b%d"},
    {"YYYY/DD/MM", "%Y%d%b"},
    {"DD/MM/YYYY - Numerical Month", "%d%m%Y"},
    {"MM/DD/YYYY - Numerical Month", "%m%d%Y"},
    {"YYYY/MM/DD - Numerical Month", "%Y%m%d"},
    {"YYYY/DD/MM - Numerical Month", "%Y%d%m"},
}};

std::string dateCommand(std::string_view dateFormat, std::string_view time) {
  const auto* row = std::find_if(kDateFormats.begin(), kDateFormats.end(),
                                 [&](const DateFormat& format) { return format.name == dateFormat; });
  if (row == kDateFormats.end()) row = kDateFormats.begin();
  return fill("`date +{fields}{time}`", {{"fields", row->fields}, {"time", time}});
}

}  // namespace

std::string getDateAndTimeString(std::string_view dateFormat) { return dateCommand(dateFormat, "-%H%M"); }

std::string getDateString(std::string_view dateFormat) { return dateCommand(dateFormat, ""); }

std::string composeFilename(std::string filenameTemplate, std::string_view dateFormat, const Facts& facts) {
  replaceAll(filenameTemplate, "(Machine Name)", facts.localizedComputerName);
  replaceAll(filenameTemplate, "(Username)", facts.userName);
  replaceAll(filenameTemplate, "Date&Time", getDateAndTimeString(dateFormat));
  replaceAll(filenameTemplate, "Date", getDateString(dateFormat));
  return filenameTemplate;
}

void nameClient(std::string& filename, std::string_view word) {
  replaceAll(filename, "(Email Client)", word);
}

}  // namespace corvane
