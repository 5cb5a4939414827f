// The process, as each operating system has it.
#include "cli/process.h"

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace zorvela {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr std::array<int, 2> kInterrupts = {SIGINT, SIGTERM};
#else
constexpr std::array<int, 3> kInterrupts = {SIGINT, SIGTERM, SIGHUP};
#endif

// The file to remove. Plain data, because the handler of a signal may touch nothing else.
std::array<char, 4096> unfinishedFile{};

extern "C" void removeUnfinished(int number) {
  std::remove(unfinishedFile.data());
  std::signal(number, SIG_DFL);
  std::raise(number);
}

void setInterrupts(void (*handler)(int)) {
  for (const int number : kInterrupts)
    if (std::signal(number, handler) == SIG_IGN) std::signal(number, SIG_IGN);
}

fs::path programPath() {
#ifdef _WIN32
  std::array<wchar_t, 4096> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return length < path.size() ? fs::path(path.data()) : fs::path();
#elif defined(__APPLE__)
  std::array<char, 4096> path{};
  std::uint32_t size = path.size();
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  std::error_code unknown;
  return fs::canonical(path.data(), unknown);
#else
  std::error_code unknown;
  return fs::read_symlink("/proc/self/exe", unknown);
#endif
}

}  // namespace

void prepareProcess() {
#ifdef _WIN32
  for (int number = 0; number <= 1; ++number) _setmode(number, _O_BINARY);
#else
  std::signal(SIGXFSZ, SIG_IGN);
  // The file opened for a closed stream cannot be read or written, so its use still fails.
  for (int number = 0; number <= 2; ++number)
    if (fcntl(number, F_GETFD) < 0 && open("/dev/null", number == 0 ? O_WRONLY : O_RDONLY) < 0) return;
#endif
}

std::string programFolder() {
  return programPath().parent_path().string();
}

#ifdef _WIN32
bool isCapableTerminal(StandardStream stream) {
  const int number = static_cast<int>(stream);
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(number));
  DWORD mode = 0;
  return _isatty(number) != 0 && GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}
#else
bool isCapableTerminal(StandardStream stream) {
  const char* term = std::getenv("TERM");
  return isatty(static_cast<int>(stream)) != 0 && term != nullptr && std::strcmp(term, "dumb") != 0 &&
         *term != '\0';
}
#endif

bool wantsColour(const std::string& output) {
  const char* refused = std::getenv("NO_COLOR");
  return output == "-" && isCapableTerminal(StandardStream::output) &&
         (refused == nullptr || *refused == '\0');
}

RemovedOnInterrupt::RemovedOnInterrupt(const std::string& path) {
  // A longer path is above the limit of the system, so no such file is made.
  path.copy(unfinishedFile.data(), unfinishedFile.size() - 1);
  setInterrupts(removeUnfinished);
}

RemovedOnInterrupt::~RemovedOnInterrupt() {
  setInterrupts(SIG_DFL);
  unfinishedFile.fill('\0');
}

}  // namespace zorvela
