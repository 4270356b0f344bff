// Sequences that follow the levels of push and pop.
//
// Whoever backtracks notes what it did on a trail and takes it back from there, the newest first. A
// level costs one number, and closing it as much as was noted in it.
#ifndef VORN_UTILS_TRAIL_H
#define VORN_UTILS_TRAIL_H

#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

namespace vorn {

/// Items in the order in which they came. Those that came since a level was opened leave when it is
/// closed; what came while none was open is of level 0.
template <class T>
class Trail {
 public:
  /// The items of all levels, the oldest first.
  const std::vector<T>& get_items() const { return items; }
  /// How many there are.
  std::size_t get_size() const { return items.size(); }
  /// How many of them are of that level, which is at most get_level(), or of one around it: they
  /// are the first ones.
  std::size_t get_size(std::size_t level) const {
    assert(level <= marks.size());
    return level < marks.size() ? marks[level] : items.size();
  }
  /// The number of open levels.
  std::size_t get_level() const { return marks.size(); }

  /// Makes room for another item, so that adding one cannot fail.
  void make_room() {
    if (items.size() == items.capacity()) items.reserve(2 * items.size() + 1);
  }
  /// Appends an item to the innermost level.
  void add(T item) { items.push_back(std::move(item)); }
  /// Opens a level.
  void push() { marks.push_back(items.size()); }
  /// Closes the innermost level, of which there must be one. Its items leave, the newest first;
  /// `undo` is called with each.
  template <class Undo>
  void pop(const Undo& undo) {
    const std::size_t size = close();
    retract(size, undo);
  }
  void pop() {
    pop([](const T&) {});
  }
  /// Closes the innermost level, of which there must be one. Its items go over to the one around
  /// it.
  void merge() { close(); }
  /// Lets the items leave that came when there were `size`, likewise; all of them are of the
  /// innermost level.
  template <class Undo>
  void retract(std::size_t size, const Undo& undo) {
    assert(size >= (marks.empty() ? 0 : marks.back()));
    for (; items.size() > size; items.pop_back())
      undo(std::as_const(items.back()));
  }
  /// Forgets all items and levels.
  void clear() {
    items.clear();
    marks.clear();
  }

 private:
  std::size_t close() {
    assert(!marks.empty());
    const std::size_t size = marks.back();
    marks.pop_back();
    return size;
  }

  std::vector<T> items;
  std::vector<std::size_t> marks;  // the number of items when each level was opened
};

}  // namespace vorn

#endif
