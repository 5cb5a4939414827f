// One row of a table: an ordered map from column name to cell text.
//
// The rows of a file share the names of their columns, and a row's cells are one piece of memory. As a
// std::map each row would be four or more pieces with the names in each of them, and making, copying and
// releasing 650,000 of those (a protein of 50,000 residues) is most of a run: bench/ shows it. A row
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

class Row {
 public:
  using Map = std::map<std::string, std::string>;
  /// Column names in ascending order, each once.
  using Names = std::vector<std::string>;

  /// A cell as seen in a walk through the row: its column's name and its text.
  using Cell = std::pair<const std::string&, const std::string&>;
  class const_iterator {
   public:
    const_iterator(const Row* walked, std::size_t at) : row(walked), i(at) {}
    Cell operator*() const { return {(*row->names)[i], row->texts[i]}; }
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
    const Row* row;
    std::size_t i;
  };

  Row() = default;
  /// A row with these columns and their cells.
  Row(std::shared_ptr<Names> columns, const std::vector<std::string_view>& cells)
      : names(std::move(columns)), texts(cells.begin(), cells.end()) {}
  Row(std::initializer_list<Map::value_type> cells) : Row(Map(cells)) {}
  Row(const Map& cells) {
    for (const auto& [name, text] : cells) (*this)[name] = text;
  }
  operator Map() const {
    Map cells;
    for (const auto& [name, text] : *this) cells.emplace_hint(cells.end(), name, text);
    return cells;
  }

  bool empty() const { return texts.empty(); }
  std::size_t size() const { return texts.size(); }
  const_iterator begin() const { return {this, 0}; }
  const_iterator end() const { return {this, size()}; }
  std::size_t count(const std::string& name) const { return placeOf(name) < size() ? 1 : 0; }

  /// The cell of that column; `end()` if the row lacks it.
  const_iterator find(const std::string& name) const { return {this, placeOf(name)}; }
  /// The text of a cell; empty text if the row lacks it.
  const std::string& text(const std::string& name) const { return textAt(placeOf(name)); }
  /// The text of a cell; throws std::out_of_range if the row lacks it.
  const std::string& at(const std::string& name) const { return texts.at(placeOf(name)); }
  /// The text of a cell, which is made if the row lacks it.
  std::string& operator[](const std::string& name) {
    const std::size_t place = placeOf(name);
    return place < size() ? texts[place] : insert(name);
  }

  /// Reads one column row after row. Rows of one file share their names, so that the cell's place is
  /// looked up once.
  class Column {
   public:
    explicit Column(const std::string& column) : name(column) {}
    /// The text of the cell; empty text if the row lacks it.
    const std::string& of(const Row& row) {
      if (row.names.get() != names) {
        names = row.names.get();
        place = row.placeOf(name);
      }
      return row.textAt(place);
    }

   private:
    std::string name;
    const Names* names = nullptr;
    std::size_t place = 0;
  };

  friend bool operator==(const Row& a, const Row& b) {
    return a.texts == b.texts && (a.names == b.names || a.empty() || *a.names == *b.names);
  }
  friend bool operator!=(const Row& a, const Row& b) { return !(a == b); }

 private:
  // Index of the cell of that column; the size of the row if it lacks it.
  std::size_t placeOf(const std::string& name) const {
    std::size_t i = 0;
    while (i < texts.size() && (*names)[i] != name) ++i;
    return i;
  }

  const std::string& textAt(std::size_t place) const {
    static const std::string none;
    return place < texts.size() ? texts[place] : none;
  }

  // A new column belongs to this row alone.
  std::string& insert(const std::string& name) {
    if (!names)
      names = std::make_shared<Names>();
    else if (names.use_count() > 1)
      names = std::make_shared<Names>(*names);
    const auto at = std::lower_bound(names->begin(), names->end(), name);
    const auto i = at - names->begin();
    names->insert(at, name);
    return *texts.emplace(texts.begin() + i);
  }

  std::shared_ptr<Names> names;
  std::vector<std::string, PoolAllocator<std::string>> texts;
};
