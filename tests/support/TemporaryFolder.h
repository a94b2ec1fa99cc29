// A folder for one test, which is removed with its content.
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

/// Creates a folder in the system's folder for temporary files and removes it when destroyed.
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

  /// Writes a file in this folder, creates missing folders, and returns the file's path.
  std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const {
    std::filesystem::path path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path.string());
    return path;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_TEMPORARYFOLDER_H_
