// Buffered writes to a descriptor.
#include "cli/descriptor_stream.h"

#include <unistd.h>

#include <cerrno>

namespace zorvela {

DescriptorBuffer::DescriptorBuffer(int openDescriptor) : descriptor(openDescriptor) {
  setp(block.data(), block.data() + block.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c) {
  if (sync() != 0) return traits_type::eof();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return sputc(traits_type::to_char_type(c));
}

int DescriptorBuffer::sync() {
  const char* next = pbase();
  while (firstError == 0 && next < pptr()) {
    const ssize_t count = write(descriptor, next, static_cast<std::size_t>(pptr() - next));
    if (count > 0)
      next += count;
    else if (count == 0)
      firstError = EIO;
    else if (errno != EINTR)
      firstError = errno;
  }
  setp(block.data(), block.data() + block.size());
  return firstError == 0 ? 0 : -1;
}

}  // namespace zorvela
