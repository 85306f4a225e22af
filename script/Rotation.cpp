#include "script/Rotation.h"

#include <algorithm>

#include "script/Text.h"

namespace corvane {
namespace {

// Pattern and limit are inserted as they are, so that the shell sees what the user wrote.
constexpr std::string_view kLoop = R"(
	backups=$(ls -l "{destination}" | grep {pattern} | wc -l)
	cd "{destination}"
	maxbackups={count}
	while [ $backups -gt $maxbackups ];
		do
		echo "Removing old backup"
		rm -f `ls -lrt | grep {pattern} | head -1 | grep -v total | awk '{print $9}'`
		let backups-=1
	done)";

constexpr std::string_view kDateCommand = "`date";

// Of a character of several bytes, all but the first.
bool isInsideCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80; }

}  // namespace

std::string rotationPattern(std::string_view filename) {
  const auto date = filename.find(kDateCommand);
  if (date != 0) return std::string(filename.substr(0, date));
  auto start = filename.rfind('`') + 2;  // behind the first byte of the separator
  while (start < filename.size() && isInsideCharacter(filename[start])) ++start;
  return std::string(filename.substr(std::min(start, filename.size())));
}

std::string addLimitedBackups(int limit, std::string_view /*client*/, std::string script,
                              std::string_view destination, const RunRecord& record) {
  return script + fill(kLoop, {{"destination", destination},
                               {"pattern", rotationPattern(record.currentFilename)},
                               {"count", std::to_string(limit)}});
}

}  // namespace corvane
