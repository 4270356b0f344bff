// The memory of handles.
//
// A handle that its owner has given up must not point to memory that is gone, or nobody could tell
// it from one that is in use. So records are never freed before their pool, and what was given back
// rests, marked as released, until more than a thousand others rest behind it.
#ifndef VORN_C_POOL_H
#define VORN_C_POOL_H

#include <cstddef>
#include <deque>

namespace vorn::c {

/// Records of one kind, which have a `next` for lists of those that rest.
template <class Record>
class Pool {
 public:
  /// A record as it was given back, or a new one.
  Record* take() {
    if (resting <= kLeastResting) return &records.emplace_back();
    Record* oldest = first;
    first = oldest->next;
    oldest->next = nullptr;
    --resting;
    return oldest;
  }

  /// Takes back a record, which its owner has marked as released.
  void give_back(Record* record) {
    if (first == nullptr) {
      first = record;
    } else {
      last->next = record;
    }
    last = record;
    ++resting;
  }

 private:
  static constexpr std::size_t kLeastResting = 1024;

  std::deque<Record> records;
  Record* first = nullptr;  // of those that rest, the one given back earliest
  Record* last = nullptr;
  std::size_t resting = 0;
};

}  // namespace vorn::c

#endif
