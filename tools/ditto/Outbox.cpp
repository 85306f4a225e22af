#include "tools/ditto/Outbox.h"

#include <utility>

namespace corvane::ditto {
namespace {

constexpr std::size_t kMostRoom = std::size_t{12} << 20;

// All that a piece takes; messages, too, can be many where nothing can be read.
std::size_t roomOf(const Piece& piece) {
  std::size_t room = sizeof piece + piece.bytes.capacity() + piece.entries.capacity() * sizeof(ZipEntry) +
                     piece.messages.capacity() * sizeof(Message);
  for (const ZipEntry& entry : piece.entries) room += entry.name.capacity();
  for (const Message& message : piece.messages) room += message.path.capacity() + message.cause.capacity();
  return room;
}

}  // namespace

void Outbox::awaitTurn(Place place) {
  std::unique_lock lock(mutex_);
  written_.wait(lock, [&] { return room_ < kMostRoom || place == next_ || demand_ == Demand::nothing; });
}

void Outbox::put(Place place, Piece piece) {
  const std::scoped_lock lock(mutex_);
  room_ += roomOf(piece);
  pieces_.emplace(place, std::move(piece));
  if (place == next_) arrived_.notify_one();
}

void Outbox::makerEnded(const std::string& problem) {
  const std::scoped_lock lock(mutex_);
  --makers_;
  if (!problem.empty()) {
    problem_ = problem;
    demand_ = Demand::nothing;
    written_.notify_all();
  }
  arrived_.notify_one();
}

std::string Outbox::problem() {
  const std::scoped_lock lock(mutex_);
  return problem_;
}

void Outbox::setDemand(Demand demand) {
  const std::scoped_lock lock(mutex_);
  demand_ = demand;
  written_.notify_all();
}

std::optional<Piece> Outbox::next() {
  std::unique_lock lock(mutex_);
  arrived_.wait(lock, [&] { return makers_ == 0 || pieces_.contains(next_); });
  const auto found = pieces_.find(next_);
  if (found == pieces_.end()) return std::nullopt;
  Piece piece = std::move(found->second);
  pieces_.erase(found);
  room_ -= roomOf(piece);
  next_ = piece.endsBatch ? Place{next_.batch + 1, 0} : Place{next_.batch, next_.part + 1};
  written_.notify_all();
  return piece;
}

}  // namespace corvane::ditto
