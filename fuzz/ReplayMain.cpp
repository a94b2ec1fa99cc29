// The main program of a fuzzer that is built without libFuzzer. Its arguments are files and
// folders. It runs the fuzzer on empty input, on each file, and on all files below each folder,
// sorted by path.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::set<std::filesystem::path> FilesBelow(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::set<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.insert(entry.path());
  }
  if (files.empty()) throw std::runtime_error("no files in '" + path.string() + "'");
  return files;
}

std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad())
    throw std::runtime_error("cannot read '" + file.string() + "'");
  return bytes;
}

void Run(const std::string& bytes) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

int Replay(int argc, char** argv) {
  if (argc < 2) throw std::runtime_error("no files or folders given");
  Run({});
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::filesystem::path& file : FilesBelow(argv[i])) {
      // Print the name before the run, because the process aborts if a property does not hold.
      static_cast<void>(std::fprintf(stderr, "%s\n", file.c_str()));
      Run(ReadFile(file));
      ++count;
    }
  }
  static_cast<void>(std::fprintf(stderr, "all properties hold for %zu inputs\n", count));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Replay(argc, argv);
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "%s: %s\n", argv[0], error.what()));
    return 2;
  }
}
