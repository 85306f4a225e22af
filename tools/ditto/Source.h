// Opening what is to be copied, and reading files from end to end. Thread: any.
#pragma once

#include <sys/stat.h>
#include <functional>
#include <span>
#include <string>

#include "tools/ditto/Descriptor.h"
#include "tools/ditto/Report.h"

namespace corvane::ditto {

/// Opens the file or folder that the user named; a link is followed here, and only here. Not open when it
/// cannot be opened or is neither: this has been reported then.
[[nodiscard]] Descriptor openSource(const std::string& path, struct stat& status, Report& report);

/// The last name of a path that the user gave, without slashes; of "." and ".." the folder's own name.
/// Empty for the root of the file system.
[[nodiscard]] std::string ownName(const std::string& path);

/// Opens the regular file `name` of `folder` without an effect on whatever has taken its place. Not open, and
/// `cause` says why, when it is none any more or cannot be opened.
[[nodiscard]] Descriptor openFile(int folder, const char* name, struct stat& status, std::string& cause);

/// The open regular file `opened` a second time, as openFile().
[[nodiscard]] Descriptor openAgain(int opened, struct stat& status, std::string& cause);

/// What the link `name` of `folder` points to. False, and `cause` says why, when it cannot be read.
[[nodiscard]] bool readLink(int folder, const char* name, std::string& target, struct stat& status,
                            std::string& cause);

/// The cause given for a file whose size is not what it was.
inline constexpr const char* kChanged = "changed while it was read";

enum class Transfer { done, unreadable, unwritable };

/// Takes the next bytes of a file; false, with errno, when it cannot.
using TakeBytes = std::function<bool(std::span<const char>)>;

/// Whether the open file, which was as `opened` says before it was read, has not been written to meanwhile:
/// of one that was, a copy may be a mixture. `cause` says so if it was, or cannot be told.
[[nodiscard]] bool isUnchanged(int file, const struct stat& opened, std::string& cause);

/// Hands all bytes of `file` to `take`. When they are not as many as `opened` says, or the file is not
/// unchanged at the end: unreadable. `cause` is set unless the transfer is done.
[[nodiscard]] Transfer readWhole(int file, const struct stat& opened, const TakeBytes& take,
                                 std::string& cause);

}  // namespace corvane::ditto
