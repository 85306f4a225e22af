#include "tools/ditto/WorkQueue.h"

#include <utility>

namespace corvane::ditto {
namespace {

// Enough to be worth the locks and the write; few enough folders to hold open.
constexpr std::size_t kItems = 64;
constexpr std::size_t kFolders = 2;

}  // namespace

bool WorkQueue::fill(Batch& batch) {
  batch.items.reserve(kItems);
  std::size_t folders = 0;
  while (batch.items.size() < kItems && folders < kFolders) {
    Item item;
    if (!next_(item)) {
      ended_ = true;
      break;
    }
    if (batch.items.empty() || batch.items.back().folder != item.folder) ++folders;
    batch.items.push_back(std::move(item));
  }
  if (batch.items.empty()) return false;
  batch.number = batches_++;
  return true;
}

std::optional<Work> WorkQueue::take() {
  std::unique_lock lock(mutex_);
  while (!stopped_) {
    if (!large_.empty()) return takeBlock(large_.begin()->second);
    if (Batch batch; !ended_ && fill(batch)) {
      ++atWork_;
      return batch;
    }
    if (atWork_ == 0) break;
    changed_.wait(lock);
  }
  changed_.notify_all();
  return std::nullopt;
}

void WorkQueue::finished() {
  const std::scoped_lock lock(mutex_);
  if (--atWork_ == 0) changed_.notify_all();
}

void WorkQueue::offer(const std::shared_ptr<LargeFile>& file) {
  const std::scoped_lock lock(mutex_);
  large_.emplace(file->first, file);
  changed_.notify_all();
}

Block WorkQueue::takeBlock(const std::shared_ptr<LargeFile>& file) {
  Block block{file, file->taken++};
  if (file->taken == file->blocks) large_.erase(file->first);
  return block;
}

std::optional<Block> WorkQueue::takeOf(const std::shared_ptr<LargeFile>& file) {
  const std::scoped_lock lock(mutex_);
  if (stopped_ || file->taken == file->blocks) return std::nullopt;
  return takeBlock(file);
}

void WorkQueue::stop() {
  const std::scoped_lock lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

}  // namespace corvane::ditto
