// Paths are made of UTF-8 text by mbrtowc, which knows only code pages of at most two bytes a character.
// Programs are linked with -Wl,--wrap=mbrtowc, so that this takes its place.
#include <windows.h>

#include <cwchar>

extern "C" std::size_t __wrap_mbrtowc(wchar_t* to, const char* from, std::size_t count,
                                      std::mbstate_t* state) {
  constexpr auto kInvalid = static_cast<std::size_t>(-1);
  constexpr auto kIncomplete = static_cast<std::size_t>(-2);
  if (from == nullptr) return 0;
  // The second half of a character beyond 16 bits; its last byte is still there.
  if (*state != 0) {
    *to = static_cast<wchar_t>(*state);
    *state = 0;
    return 1;
  }
  if (count == 0) return kIncomplete;
  const auto lead = static_cast<unsigned char>(*from);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (count < length) return kIncomplete;
  wchar_t halves[2];
  switch (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, from, static_cast<int>(length), halves, 2)) {
    case 0:
      return kInvalid;
    case 1:
      *to = halves[0];
      return *from == '\0' ? 0 : length;
    default:
      *to = halves[0];
      *state = halves[1];
      return length - 1;
  }
}
