// The finished pieces, put in order. Owner: the thread that writes; the others have a reference. Thread: any
// for all but what is marked. Memory stays bounded: who is too far ahead of the writing waits, and whoever
// makes the piece that is to be written next never does.
#pragma once

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "tools/ditto/Piece.h"

namespace corvane::ditto {

enum class Demand {
  everything,
  failures,  ///< the archive is lost; what else cannot be opened is still worth knowing
  nothing
};

class Outbox {
 public:
  /// `makers`: how many threads will say that they ended.
  explicit Outbox(std::size_t makers) : makers_(makers) {}

  /// Waits until there is room for the piece of that place.
  void awaitTurn(Place place);
  void put(Place place, Piece piece);
  /// A thread that makes pieces ends; `problem` unless it is empty: before its work was done.
  void makerEnded(const std::string& problem);

  [[nodiscard]] Demand demand() const { return demand_; }
  /// From now on, and at once.
  void setDemand(Demand demand);

  /// Writing thread: waits for the next piece in order; none when there will be none.
  [[nodiscard]] std::optional<Piece> next();
  /// What ended a thread before its time; empty when nothing did.
  [[nodiscard]] std::string problem();

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::condition_variable written_;
  std::map<Place, Piece> pieces_;
  std::size_t room_ = 0;  // that the pieces take
  Place next_;
  std::size_t makers_;
  std::string problem_;
  std::atomic<Demand> demand_ = Demand::everything;
};

}  // namespace corvane::ditto
