// Provides a temporary folder for a test.
#ifndef TESTS_SUPPORT_TEMPORARYFOLDER_H_
#define TESTS_SUPPORT_TEMPORARYFOLDER_H_

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace test_support {

/// A new folder in the system's folder for temporary files. The destructor removes the folder and
/// its content. The constructor throws `std::system_error` on failure.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ornwhatsnew-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const noexcept { return path_; }

  /// Writes `bytes` to the file `name` in this folder and returns its path. Creates missing folders
  /// and replaces an existing file. Throws `std::runtime_error` if the file cannot be written.
  std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const {
    std::filesystem::path path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write '" + path.string() + "'");
    return path;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_TEMPORARYFOLDER_H_
