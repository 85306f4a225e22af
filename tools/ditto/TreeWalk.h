// Goes through a folder's tree: every folder before what is in it, the names of each folder in the order of
// their bytes. Links are never followed, nothing but regular files is opened for reading, and what has
// another kind than it had when it was listed is reported. Thread: one at a time.
#pragma once

#include <sys/stat.h>
#include <string>
#include <vector>

#include "tools/ditto/FolderStack.h"
#include "tools/ditto/Report.h"

namespace corvane::ditto {

struct WalkItem {
  const std::string& path;    ///< below the root: names with slashes between them
  const char* name;           ///< the last name of `path`
  const struct stat& status;  ///< of files and folders as they were opened
};

/// What is done with the tree. References and descriptors are valid during the call only.
class TreeVisitor {
 public:
  virtual ~TreeVisitor() = default;

  /// True for what is to be passed over in silence: `name` in the folder `parent`.
  [[nodiscard]] virtual bool leavesOut(const FileIdentity&, const std::string&) const { return false; }

  /// False when the folder shall be passed over; leaveFolder() is then not called.
  [[nodiscard]] virtual bool enterFolder(const WalkItem& item) = 0;
  /// After all that is in it.
  virtual void leaveFolder(const WalkItem& item, int folder) = 0;
  virtual void file(const WalkItem& item, int file) = 0;
  virtual void link(const WalkItem& item, const std::string& target) = 0;

  /// True when going on has no use.
  [[nodiscard]] virtual bool mustStop() const = 0;
};

class TreeWalk {
 public:
  /// `rootPath` names the root in messages. What cannot be read is reported, and the walk goes on.
  TreeWalk(Descriptor root, std::string rootPath, TreeVisitor& visitor, Report& report);

  /// Visits everything below the root, not the root itself. `oneFileSystem`: not what is in folders of
  /// another device.
  void run(bool oneFileSystem);

 private:
  struct Level {
    std::vector<std::string> names;
    std::size_t next = 0;
    std::size_t pathLength = 0;
    struct stat status {};
  };

  void visit(const std::string& name);
  void visitFolder(const std::string& name);
  void visitFile(const std::string& name);
  void visitLink(const std::string& name, const struct stat& status);
  [[nodiscard]] Descriptor open(const std::string& name, int flags, struct stat& status);
  void descend(Descriptor folder, const struct stat& status);
  void leave();
  [[nodiscard]] std::string shownPath() const;

  FolderStack folders_;
  std::string rootPath_;
  TreeVisitor& visitor_;
  Report& report_;
  std::vector<Level> levels_;
  std::string path_;
  bool oneFileSystem_ = false;
  bool lost_ = false;
};

}  // namespace corvane::ditto
