// A library to load before zorvela-kit (LD_PRELOAD): the calls named in the environment fail as they may on a
// full disk, a bad drive, a busy or a small machine.
//
// ZORVELA_FAULT_READ, _WRITE, _FSYNC, _LINK, _RENAME, _TMPFILE, _THREAD and _NEW are each KIND@N (the Nth
// call fails) or KIND+N (that one and all after it). KIND is the number of an error, "short" (a few bytes at
// a time) or "signal" and a number. Calls are counted from the beginning of main: `signal` is its first call.
// ZORVELA_FAULT_NEW_FROM: allocations of fewer bytes do not count.
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

std::atomic<bool> hasBegun{false};
constexpr std::size_t kShort = 7;  // bytes

class Fault {
 public:
  explicit Fault(const char* variable) {
    const char* text = std::getenv(variable);
    if (text == nullptr) return;
    isShort = std::strncmp(text, "short", 5) == 0;
    const bool isSignal = std::strncmp(text, "signal", 6) == 0;
    const int number = std::atoi(text + (isSignal ? 6 : 0));
    (isSignal ? signalNumber : error) = number;
    const char* place = std::strpbrk(text, "@+");
    goesOn = *place == '+';
    at = std::atol(place + 1);
  }
  bool isSet() const { return at > 0; }
  /// Whether this call is to fail. A fault that is a signal raises it.
  bool strikes() {
    if (!isSet() || !hasBegun) return false;
    const long call = ++calls;
    if (call != at && !(goesOn && call > at)) return false;
    if (signalNumber != 0) {
      raise(signalNumber);
      return false;
    }
    errno = error;
    return true;
  }
  bool isShort = false;

 private:
  int error = 0;
  int signalNumber = 0;
  bool goesOn = false;
  long at = 0;
  std::atomic<long> calls{0};
};

#define FAULT(name)                             \
  Fault& name##Fault() {                        \
    static Fault fault("ZORVELA_FAULT_" #name); \
    return fault;                               \
  }
FAULT(OPEN)
FAULT(READ)
FAULT(WRITE)
FAULT(FSYNC)
FAULT(LINK)
FAULT(RENAME)
FAULT(TMPFILE)
FAULT(THREAD)
FAULT(NEW)

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

ssize_t readOrFail(int descriptor, void* bytes, std::size_t size) {
  static auto* const real = next<ssize_t(int, void*, std::size_t)>("read");
  if (READFault().strikes()) {
    if (!READFault().isShort) return -1;
    if (size > kShort) size = kShort;
  }
  return real(descriptor, bytes, size);
}

// --- Streams of stdio, whose reads cannot be taken over: they get ones that can ----------------------

int numberOf(void* cookie) {
  return static_cast<int>(reinterpret_cast<std::size_t>(cookie));
}

FILE* openFaulty(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  cookie_io_functions_t functions{};
  functions.read = [](void* cookie, char* bytes, std::size_t size) {
    return readOrFail(numberOf(cookie), bytes, size);
  };
  functions.close = [](void* cookie) { return close(numberOf(cookie)); };
  return fopencookie(reinterpret_cast<void*>(static_cast<std::size_t>(descriptor)), "r", functions);
}

}  // namespace

extern "C" {

sighandler_t signal(int number, sighandler_t handler) noexcept {
  hasBegun = true;
  return next<sighandler_t(int, sighandler_t)>("signal")(number, handler);
}

FILE* fopen(const char* path, const char* mode) {
  if (OPENFault().strikes()) return nullptr;
  if (mode[0] == 'r' && READFault().isSet()) return openFaulty(path);
  return next<FILE*(const char*, const char*)>("fopen")(path, mode);
}

ssize_t read(int descriptor, void* bytes, std::size_t size) {
  return readOrFail(descriptor, bytes, size);
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
  if (descriptor != STDERR_FILENO && WRITEFault().strikes()) {
    if (!WRITEFault().isShort) return -1;
    if (size > kShort) size = kShort;
  }
  return real(descriptor, bytes, size);
}

int fsync(int descriptor) {
  return FSYNCFault().strikes() ? -1 : next<int(int)>("fsync")(descriptor);
}

int linkat(int from, const char* old, int to, const char* name, int flags) noexcept {
  if (LINKFault().strikes()) return -1;
  return next<int(int, const char*, int, const char*, int)>("linkat")(from, old, to, name, flags);
}

int renameat(int from, const char* old, int to, const char* name) noexcept {
  if (RENAMEFault().strikes()) return -1;
  return next<int(int, const char*, int, const char*)>("renameat")(from, old, to, name);
}

int openat(int folder, const char* path, int flags, ...) {
  if ((flags & O_TMPFILE) == O_TMPFILE && TMPFILEFault().strikes()) return -1;
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return next<int(int, const char*, int, mode_t)>("openat")(folder, path, flags, mode);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
  if (THREADFault().strikes()) return EAGAIN;
  return next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create")(
      thread, attributes, run, argument);
}

}  // extern "C"

std::size_t smallestAllocation() {
  const char* text = std::getenv("ZORVELA_FAULT_NEW_FROM");
  return text == nullptr ? 0 : std::strtoul(text, nullptr, 10);
}

void* operator new(std::size_t size) {
  static const std::size_t smallest = smallestAllocation();
  void* const memory = size >= smallest && NEWFault().strikes() ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
