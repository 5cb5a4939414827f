// An output stream over a descriptor that is open already.
#pragma once

#include <array>
#include <ostream>
#include <streambuf>

namespace zorvela {

/// Writes at the descriptor's own place, so that what stands before it stays. Calls that a signal cut
/// short are made again. The descriptor stays open.
class DescriptorBuffer : public std::streambuf {
 public:
  explicit DescriptorBuffer(int openDescriptor);
  /// The number of the first error, as in errno; 0 where there was none.
  int error() const { return firstError; }

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  int descriptor;
  int firstError = 0;
  std::array<char, 1 << 15> block{};
};

}  // namespace zorvela
