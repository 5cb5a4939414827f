// Windows would write every line end as two bytes; linked into a program, this keeps them those of the data.
#include <fcntl.h>
#include <io.h>
#include <stdlib.h>

namespace {

[[maybe_unused]] const bool isSet = [] {
  _fmode = _O_BINARY;
  for (int number = 0; number <= 2; ++number) _setmode(number, _O_BINARY);
  return true;
}();

}  // namespace
