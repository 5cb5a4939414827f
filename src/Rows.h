// The rows of a table by number: an ordered map, kept as a sequence.
//
// Rows are numbered consecutively as they are read or added, so that a sequence finds a number at once
// and grows at its end without a tree to balance. It is used like a std::map; a row keeps its address
// as long as rows are added at the end.
#pragma once

#include <algorithm>  // for std::lower_bound
#include <cstddef>    // for std::size_t
#include <deque>      // for std::deque
#include <stdexcept>  // for std::out_of_range
#include <utility>    // for std::pair

#include "Row.h"

class Rows {
 public:
  using key_type = int;
  using mapped_type = Row;
  using value_type = std::pair<int, Row>;  // the number must not be changed
  using Sequence = std::deque<value_type, PoolAllocator<value_type>>;
  using iterator = Sequence::iterator;
  using const_iterator = Sequence::const_iterator;

  bool empty() const { return rows.empty(); }
  std::size_t size() const { return rows.size(); }
  void clear() { rows.clear(); }

  iterator begin() { return rows.begin(); }
  iterator end() { return rows.end(); }
  const_iterator begin() const { return rows.begin(); }
  const_iterator end() const { return rows.end(); }
  Sequence::const_reverse_iterator rbegin() const { return rows.rbegin(); }
  Sequence::const_reverse_iterator rend() const { return rows.rend(); }

  /// The first row with this number or a greater one.
  iterator lower_bound(int number) { return rows.begin() + place(number); }
  const_iterator lower_bound(int number) const { return rows.begin() + place(number); }
  iterator find(int number) {
    const iterator at = lower_bound(number);
    return at != end() && at->first == number ? at : end();
  }
  const_iterator find(int number) const {
    const const_iterator at = lower_bound(number);
    return at != end() && at->first == number ? at : end();
  }
  std::size_t count(int number) const { return find(number) == end() ? 0 : 1; }

  /// The row with this number; throws std::out_of_range if there is none.
  const Row& at(int number) const {
    const const_iterator found = find(number);
    if (found == end()) throw std::out_of_range("no such row");
    return found->second;
  }
  /// The row with this number, made if there is none.
  Row& operator[](int number) {
    const iterator found = lower_bound(number);
    if (found != end() && found->first == number) return found->second;
    return rows.emplace(found, number, Row())->second;
  }
  /// Adds a row behind the last one, whose number must be smaller.
  Row& append(int number, Row row) { return rows.emplace_back(number, std::move(row)).second; }
  std::size_t erase(int number) {
    const iterator found = find(number);
    if (found == end()) return 0;
    rows.erase(found);
    return 1;
  }

  friend bool operator==(const Rows& a, const Rows& b) { return a.rows == b.rows; }
  friend bool operator!=(const Rows& a, const Rows& b) { return !(a == b); }

 private:
  std::ptrdiff_t place(int number) const {
    if (rows.empty() || number <= rows.front().first) return 0;
    // Where no number is left out, a row stands as far from the first as its number.
    const std::size_t distance =
        static_cast<std::size_t>(static_cast<long long>(number) - rows.front().first);
    if (distance < rows.size() && rows[distance].first == number)
      return static_cast<std::ptrdiff_t>(distance);
    if (number > rows.back().first) return static_cast<std::ptrdiff_t>(rows.size());
    return std::lower_bound(rows.begin(), rows.end(), number,
                            [](const value_type& row, int wanted) { return row.first < wanted; }) -
           rows.begin();
  }

  Sequence rows;
};
