#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <optional>
#include <string>

#include "platform/system.h"

namespace marklet {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

constexpr mode_t kNewFileMode = 0666;                       // less what the user's mask takes away
constexpr int kAlways = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;  // a pipe without a partner must not stop us

// The path as this system spells it; none for one that no file can have.
std::optional<std::string> NativePath(std::u16string_view path) {
  if (path.empty() || path.find(u'\0') != path.npos) return std::nullopt;
  return WideCharToMultiByte(CP_UTF8, path);
}

// Reads on until `bytes` has that many, or as many as there are.
bool Extend(int file, std::vector<std::uint8_t>& bytes, std::size_t size) {
  std::size_t done = bytes.size();
  bytes.resize(size);
  while (done < size) {
    const ssize_t count = read(file, bytes.data() + done, size - done);
    if (count < 0) return false;
    if (count == 0) break;  // it was cut short meanwhile
    done += static_cast<std::size_t>(count);
  }
  bytes.resize(done);
  return true;
}

bool ReadPlainFile(int file, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  struct stat status {};
  if (file < 0 || fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (status.st_size < 0 || static_cast<std::uint64_t>(status.st_size) > kMaxFileBytes) return false;
  const auto size = static_cast<std::size_t>(status.st_size);
  if (wanted != nullptr && !(Extend(file, bytes, std::min(size, kFileStart)) && wanted(bytes))) return false;
  return Extend(file, bytes, size);
}

bool ReadThrough(int flags, std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  bytes.clear();
  try {
    const std::optional<std::string> native = NativePath(path);
    if (!native) return false;
    const Descriptor file(open(native->c_str(), flags | kAlways, kNewFileMode));
    if (ReadPlainFile(file.number(), bytes, wanted)) return true;
  } catch (const std::bad_alloc&) {
  }
  bytes = {};
  return false;
}

}  // namespace

bool ReadWholeFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  return ReadThrough(O_RDONLY, path, bytes, wanted);
}

bool ReadOrCreateFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  return ReadThrough(O_RDWR | O_CREAT, path, bytes, wanted) || ReadThrough(O_RDONLY, path, bytes, wanted);
}

}  // namespace marklet
