// Goes through a folder's tree step by step: every folder before what is in it, the names of each folder in
// the order of their bytes. Links are never followed, and nothing but folders is opened: what else there is
// the folders say themselves, without a look at each file. Thread: one at a time.
#pragma once

#include <sys/stat.h>
#include <string>
#include <vector>

#include "tools/ditto/FolderListing.h"
#include "tools/ditto/FolderStack.h"

namespace corvane::ditto {

struct WalkStep {
  enum Kind { file, link, enter, leave, failure };

  Kind kind = failure;
  std::string path;       ///< below the root: names with slashes between them; empty for the root itself
  std::size_t name = 0;   ///< where in `path` the last name begins
  struct stat status {};  ///< of a folder that is entered or left, as it was opened
  std::string cause;      ///< of a failure

  [[nodiscard]] const char* lastName() const { return path.c_str() + name; }
};

class TreeWalk {
 public:
  /// `oneFileSystem`: folders of another device are entered and left, and nothing in between.
  TreeWalk(Descriptor root, bool oneFileSystem);

  /// Puts the next step in the place of the last one, which is to be the same object each time; false behind
  /// the last. After a failure the walk goes on if it can. The root is neither entered nor left.
  [[nodiscard]] bool next(WalkStep& step);

  /// Leaves out what is in the folder that was just entered; it is not left either.
  void skip();

  /// The folder in which the last step's name is, or which was entered or is left by it.
  [[nodiscard]] const FolderStack& folders() const { return folders_; }

 private:
  struct Level {
    FolderListing names;
    std::size_t next = 0;
    std::size_t pathLength = 0;
    struct stat status {};
  };

  void list(WalkStep& step);
  void visit(std::size_t index, WalkStep& step);
  void enter(WalkStep& step);
  void leave(WalkStep& step);
  void fail(WalkStep& step) const;

  FolderStack folders_;
  bool oneFileSystem_;
  dev_t device_ = 0;
  std::vector<Level> levels_;
  enum class Pending { none, list, pop } pending_ = Pending::list;  // what the next step begins with
};

}  // namespace corvane::ditto
