#include "tools/ditto/WorkQueue.h"

#include <algorithm>
#include <utility>

namespace corvane::ditto {
namespace {

// Enough to be worth the locks and the write; not so much that others run out of room while it is packed; few
// enough folders to hold open.
constexpr std::size_t kItems = 64;
constexpr std::uint64_t kBytes = std::uint64_t{1} << 20;
constexpr std::size_t kFolders = 4;

}  // namespace

// False behind the last item.
bool WorkQueue::fill(std::vector<Item>& items, std::size_t most) {
  items.reserve(most);
  std::size_t folders = 0;
  for (const Descriptor* last = nullptr; items.size() < most && folders < kFolders;) {
    Item item;
    if (!next_(item)) return false;
    if (item.folder && item.folder.get() != last) {
      last = item.folder.get();
      ++folders;
    }
    items.push_back(std::move(item));
  }
  return true;
}

Batch WorkQueue::takeBatch(std::unique_lock<std::mutex>& lock) {
  isWalking_ = true;
  const auto most = static_cast<std::size_t>(std::clamp<std::uint64_t>(kBytes / itemSize_, 1, kItems));
  lock.unlock();
  Batch batch;
  const bool isMore = fill(batch.items, most);
  lock.lock();
  isWalking_ = false;
  ended_ = !isMore;
  changed_.notify_all();
  if (batch.items.empty()) return batch;
  ++atWork_;
  batch.number = batches_++;
  return batch;
}

std::optional<Work> WorkQueue::take() {
  std::unique_lock lock(mutex_);
  while (!stopped_) {
    if (!large_.empty()) return takeBlock();
    if (!ended_ && !isWalking_) {
      if (Batch batch = takeBatch(lock); !batch.items.empty()) return batch;
    } else if (ended_ && atWork_ == 0) {
      break;
    } else {
      changed_.wait(lock);
    }
  }
  changed_.notify_all();
  return std::nullopt;
}

// Quick to become careful, slow to forget it.
void WorkQueue::finished(const Batch& batch, std::uint64_t bytes) {
  const std::uint64_t each = bytes / batch.items.size() + 1;
  const std::scoped_lock lock(mutex_);
  itemSize_ = std::max(each, (3 * itemSize_ + each) / 4);
  if (--atWork_ == 0) changed_.notify_all();
}

void WorkQueue::offer(const std::shared_ptr<LargeFile>& file) {
  const std::scoped_lock lock(mutex_);
  large_.emplace(file->first, file);
  changed_.notify_all();
}

Block WorkQueue::takeBlock() {
  const auto first = large_.begin();
  Block block{first->second, first->second->taken++};
  if (block.file->taken == block.file->blocks) large_.erase(first);
  return block;
}

std::optional<Block> WorkQueue::takeUntilTaken(const LargeFile& file) {
  const std::scoped_lock lock(mutex_);
  if (stopped_ || file.taken == file.blocks) return std::nullopt;
  return takeBlock();
}

void WorkQueue::stop() {
  const std::scoped_lock lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

}  // namespace corvane::ditto
