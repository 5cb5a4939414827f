// Bytes of a stream, past signals.
#pragma once

#include <cstddef>
#include <cstdio>

namespace zorvela {

/// As fread, but what a signal interrupts is tried again: 0 is the end of the stream or an error (ferror,
/// errno).
std::size_t readSome(char* bytes, std::size_t size, std::FILE* stream);

}  // namespace zorvela
