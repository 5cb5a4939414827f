// Where the path of an output leads.
#pragma once

#include <string>

namespace zorvela {

/// A descriptor of our own, closed at the end; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : descriptor(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : descriptor(other.descriptor) { other.descriptor = -1; }
  Descriptor& operator=(Descriptor&&) = delete;
  int number() const { return descriptor; }
  bool isOpen() const { return descriptor >= 0; }

 private:
  int descriptor;
};

/// Either something to write into as it stands, or a file to make or replace.
struct OutputPlace {
  Descriptor stream;  ///< a terminal, a pipe, a device, or what /dev/stdout and the like lead to
  std::string file;   ///< else: the file after all links, which need not be there yet
};

/// The path after all links, also one whose target is not there; links in /proc stay. std::system_error for
/// links in a circle.
std::string afterLinks(const std::string& path);

/// Where writing to `path` leads. std::system_error where it leads nowhere: links in a circle, a folder, a
/// file that may not be written.
OutputPlace outputPlaceOf(const std::string& path);

/// The folder of a path, "." where it names none.
std::string folderOf(const std::string& path);

}  // namespace zorvela
