// What is to be archived, handed out in the order of the walk: batches of items, and the blocks of large
// files, which everybody helps with before a new batch is begun. Thread: any. Folders are listed by one of
// those who ask for work, while the others wait for that or help with a large file.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/ditto/Descriptor.h"
#include "tools/ditto/FolderStack.h"
#include "tools/ditto/Piece.h"
#include "tools/ditto/TreeWalk.h"

namespace corvane::ditto {

/// A step of the walk that leads into the archive: anything but leaving a folder.
struct Item {
  WalkStep step;
  SharedFolder folder;  ///< in which it is, if it is a file or a link; what the user named, if that is all
};

struct Batch {
  std::size_t number = 0;
  std::vector<Item> items;
};

struct LargeFile {
  Descriptor file;
  ZipEntry entry;
  std::string shownPath;
  Place first;            // of its blocks' pieces
  struct stat opened {};  // before any of it was read
  std::size_t blocks = 0;
  std::atomic<std::size_t> unread = 0;  // blocks; who reads the last one looks whether the file has changed
  std::atomic<bool> failed = false;     // and reported
  std::size_t taken = 0;                // by the queue only
};

struct Block {
  std::shared_ptr<LargeFile> file;
  std::size_t number = 0;
};

using Work = std::variant<Batch, Block>;

class WorkQueue {
 public:
  /// Puts the next item into its argument; false when there is none. Called by one thread at a time.
  using NextItem = std::function<bool(Item&)>;
  explicit WorkQueue(NextItem next) : next_(std::move(next)) {}

  /// Waits for work; none when all is done or stopped.
  [[nodiscard]] std::optional<Work> take();
  /// A batch that this thread took is packed; `bytes` is what it read for it by itself.
  void finished(const Batch& batch, std::uint64_t bytes);

  /// Lets all help with a file of the batch at hand.
  void offer(const std::shared_ptr<LargeFile>& file);
  /// The block that is to be written first of all that were offered, for as long as this file has any left:
  /// who went ahead of it would fill the room that it needs.
  [[nodiscard]] std::optional<Block> takeUntilTaken(const LargeFile& file);

  /// Nothing is handed out any more.
  void stop();

 private:
  [[nodiscard]] Block takeBlock();
  [[nodiscard]] Batch takeBatch(std::unique_lock<std::mutex>& lock);
  [[nodiscard]] bool fill(std::vector<Item>& items, std::size_t most);

  std::mutex mutex_;
  std::condition_variable changed_;
  NextItem next_;
  std::map<Place, std::shared_ptr<LargeFile>> large_;  // with blocks left
  std::size_t batches_ = 0;
  std::size_t atWork_ = 0;
  std::uint64_t itemSize_ = 65536;  // what is to be expected of the next ones
  bool isWalking_ = false;          // somebody, who has no lock: a slow folder does not stop the others
  bool ended_ = false;
  bool stopped_ = false;
};

}  // namespace corvane::ditto
