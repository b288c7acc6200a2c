// A folder of its own for a test that writes files, and what such tests do with files.

#ifndef POKERMATH_TESTS_PLATFORM_SCRATCH_FOLDER_H_
#define POKERMATH_TESTS_PLATFORM_SCRATCH_FOLDER_H_

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pokermath {

class ScratchFolder {
 public:
  ScratchFolder() : path_((std::filesystem::temp_directory_path() / "pokermath-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot create " + path_);
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Shows temporary files that were left behind.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::string path_;
};

inline std::string ContentOf(const std::string& path) {
  std::string bytes(std::filesystem::file_size(path), '\0');
  std::ifstream(path, std::ios::binary)
      .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

inline void SetContent(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// While it lives, no file grows beyond `bytes`: writing fails as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit = {bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, signal_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit old_ = {};
  void (*signal_)(int);
};

}  // namespace pokermath

#endif  // POKERMATH_TESTS_PLATFORM_SCRATCH_FOLDER_H_
