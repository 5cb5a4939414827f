// Small ordered maps by name that come in great numbers: the rows of a table (column name to cell text) and
// the reference shifts of a residue (atom name to ppm).
//
// Maps that are copies of one another share their names, and the values are one piece of memory. As a
// std::map each row would be four or more pieces with the names in each of them, and making, copying and
// releasing 650,000 of those (a protein of 50,000 residues) is most of a run: bench/ shows it. A named map
// converts to and from std::map and is used like one.
#pragma once

#include <algorithm>         // for std::lower_bound
#include <cstddef>           // for std::size_t
#include <initializer_list>  // for std::initializer_list
#include <map>               // for std::map
#include <memory>            // for std::shared_ptr
#include <string>            // for std::string
#include <string_view>       // for std::string_view
#include <utility>           // for std::pair
#include <vector>            // for std::vector

#include "Pool.h"

template <class Value>
class NamedMap {
 public:
  using Map = std::map<std::string, Value>;
  /// In ascending order, each once.
  using Names = std::vector<std::string>;

  /// An entry as seen in a walk: its name and its value.
  using Cell = std::pair<const std::string&, const Value&>;
  class const_iterator {
   public:
    const_iterator(const NamedMap* walked, std::size_t at) : row(walked), i(at) {}
    Cell operator*() const { return {(*row->names)[i], row->values[i]}; }
    struct Arrow {
      Cell cell;
      const Cell* operator->() const { return &cell; }
    };
    Arrow operator->() const { return {**this}; }
    const_iterator& operator++() {
      ++i;
      return *this;
    }
    bool operator==(const const_iterator& other) const { return i == other.i; }
    bool operator!=(const const_iterator& other) const { return i != other.i; }

   private:
    const NamedMap* row;
    std::size_t i;
  };

  NamedMap() = default;
  /// These names with their values.
  NamedMap(std::shared_ptr<Names> sharedNames, const std::vector<std::string_view>& cells)
      : names(std::move(sharedNames)), values(cells.begin(), cells.end()) {}
  NamedMap(std::initializer_list<typename Map::value_type> cells) : NamedMap(Map(cells)) {}
  NamedMap(const Map& cells) {
    for (const auto& [name, value] : cells) (*this)[name] = value;
  }
  operator Map() const {
    Map cells;
    for (const auto& [name, value] : *this) cells.emplace_hint(cells.end(), name, value);
    return cells;
  }

  bool empty() const { return values.empty(); }
  std::size_t size() const { return values.size(); }
  const_iterator begin() const { return {this, 0}; }
  const_iterator end() const { return {this, size()}; }
  std::size_t count(const std::string& name) const { return placeOf(name) < size() ? 1 : 0; }

  /// The entry of that name; `end()` if there is none.
  const_iterator find(const std::string& name) const { return {this, placeOf(name)}; }
  /// The value of that name; an empty one if there is none.
  const Value& value(const std::string& name) const { return valueAt(placeOf(name)); }
  /// The value of that name; throws std::out_of_range if there is none.
  const Value& at(const std::string& name) const { return values.at(placeOf(name)); }
  /// The value of that name, which is made if there is none.
  Value& operator[](const std::string& name) {
    const std::size_t place = placeOf(name);
    return place < size() ? values[place] : insert(name);
  }

  /// Reads one name in map after map. Rows of one file share their names, so that the place is looked up
  /// once.
  class Column {
   public:
    explicit Column(const std::string& column) : name(column) {}
    /// The value; an empty one if the map lacks the name.
    const Value& of(const NamedMap& row) {
      if (row.names.get() != names) {
        names = row.names.get();
        place = row.placeOf(name);
      }
      return row.valueAt(place);
    }

   private:
    std::string name;
    const Names* names = nullptr;
    std::size_t place = 0;
  };

  friend bool operator==(const NamedMap& a, const NamedMap& b) {
    return a.values == b.values && (a.names == b.names || a.empty() || *a.names == *b.names);
  }
  friend bool operator!=(const NamedMap& a, const NamedMap& b) { return !(a == b); }

 private:
  // Index of the value of that name; the number of values if there is none.
  std::size_t placeOf(const std::string& name) const {
    std::size_t i = 0;
    while (i < values.size() && (*names)[i] != name) ++i;
    return i;
  }

  const Value& valueAt(std::size_t place) const {
    static const Value none{};
    return place < values.size() ? values[place] : none;
  }

  // A new name belongs to this map alone.
  Value& insert(const std::string& name) {
    if (!names)
      names = std::make_shared<Names>();
    else if (names.use_count() > 1)
      names = std::make_shared<Names>(*names);
    const auto at = std::lower_bound(names->begin(), names->end(), name);
    const auto i = at - names->begin();
    names->insert(at, name);
    return *values.emplace(values.begin() + i);
  }

  std::shared_ptr<Names> names;
  std::vector<Value, PoolAllocator<Value>> values;
};

/// A row of a table: column name to cell text.
using Row = NamedMap<std::string>;
