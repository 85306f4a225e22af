#include "schedule/CrontabText.h"

#include <algorithm>
#include <vector>

namespace corvane {
namespace {

// What the frameworks' string scanner skips: spaces, tabs and line breaks of every script.
bool isWhiteSpace(char16_t unit) {
  constexpr std::u16string_view kSingle = u" \u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000";
  return (unit >= 0x09 && unit <= 0x0D) || (unit >= 0x2000 && unit <= 0x200B) ||
         kSingle.find(unit) != std::u16string_view::npos;
}

class Scanner {
 public:
  explicit Scanner(std::u16string_view text) : text_(text) {}

  [[nodiscard]] std::size_t position() const { return position_; }

  /// Skips white space, then takes what stands before `stop`, or before the end of the text. Empty, and
  /// nothing skipped, when that is nothing.
  std::u16string_view scanUpTo(std::u16string_view stop) {
    const auto start =
        std::find_if_not(text_.begin() + static_cast<std::ptrdiff_t>(position_), text_.end(), isWhiteSpace);
    const auto first = static_cast<std::size_t>(start - text_.begin());
    const auto end = std::min(text_.find(stop, first), text_.size());
    if (end > first) position_ = end;
    return text_.substr(first, end - first);
  }

 private:
  std::u16string_view text_;
  std::size_t position_ = 0;
};

bool isJob(std::u16string_view line, std::u16string_view scriptName) {
  return contains(line, scriptName) && !Scanner(line).scanUpTo(scriptName).empty();
}

struct Range {
  std::size_t start;  // where the line before ends, in front of its line break
  std::size_t length;
};

std::vector<Range> jobsIn(std::u16string_view listing, std::u16string_view scriptName) {
  std::vector<Range> jobs;
  Scanner scanner(listing);
  for (;;) {
    const std::size_t start = scanner.position();
    const auto line = scanner.scanUpTo(u"\n");
    if (line.empty()) return jobs;
    if (isJob(line, scriptName)) jobs.push_back({start, scanner.position() - start});
  }
}

}  // namespace

bool contains(std::u16string_view text, std::u16string_view what) {
  return !what.empty() && text.find(what) != std::u16string_view::npos;
}

bool saysThereIsNone(std::u16string_view text) {
  return text.starts_with(u"crontab: no crontab") || text.starts_with(u"no crontab");
}

std::size_t jobCount(const std::u16string& listing, std::u16string_view scriptName) {
  return jobsIn(listing, scriptName).size();
}

std::u16string withoutJobs(const std::u16string& listing, std::u16string_view scriptName) {
  std::u16string results = listing;
  for (const auto& job : jobsIn(listing, scriptName)) {
    if (job.start < results.size()) results.erase(job.start, job.length);
  }
  if (results.starts_with(u"\r\n")) results.erase(0, 2);
  return results;
}

std::u16string withJobInFront(std::u16string_view job, std::u16string_view crontab) {
  std::u16string text(job);
  text += crontab;
  const auto isEmptyLine = [](char16_t before, char16_t unit) { return before == u'\n' && unit == u'\n'; };
  text.erase(std::unique(text.begin(), text.end(), isEmptyLine), text.end());
  return text;
}

}  // namespace corvane
