// The folders from the root of a tree down to the one that is worked in. They are held open rather than
// named, so that a link put in the place of one of them is never followed and paths may be longer than the
// system takes; of a deep tree only the innermost are open at a time. Thread: one at a time; what share()
// answers may be kept and let go by any.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "tools/ditto/Descriptor.h"

namespace corvane::ditto {

using SharedFolder = std::shared_ptr<const Descriptor>;

class FolderStack {
 public:
  explicit FolderStack(Descriptor root);

  /// The innermost folder; belongs to the stack and is open until it is popped or two more are pushed.
  [[nodiscard]] int top() const { return levels_.back().folder->get(); }
  /// The same, open for as long as anybody holds it.
  [[nodiscard]] SharedFolder share() const { return levels_.back().folder; }
  [[nodiscard]] FileIdentity identity() const { return levels_.back().identity; }

  void push(Descriptor folder);

  /// Goes back to the folder around. False, and errno, when that cannot be found again: the tree has been
  /// moved, and the stack is of no more use.
  [[nodiscard]] bool pop();

 private:
  struct Level {
    SharedFolder folder;  // none of those far out
    FileIdentity identity;
  };

  std::vector<Level> levels_;
};

/// Opens the folder `name` of `parent`, which must be no link; when it is missing, makes it with `mode`. It
/// can be written into afterwards if its owner may allow that. Not open, and errno, on failure.
[[nodiscard]] Descriptor makeFolder(int parent, const char* name, mode_t mode);

/// Makes the folder `path` and those above it that are missing. Links in `path` are followed.
/// `isNew`: whether it was missing. Not open, and errno, on failure.
[[nodiscard]] Descriptor makeFolders(const char* path, bool& isNew);

}  // namespace corvane::ditto
