#include <ornui/utility/ResourceManager.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

#include <orncore/config/TopLevel.h>
#include <orncore/filesupport/File.h>

namespace ornui::utility {
namespace {

namespace fs = std::filesystem;
using orncore::filesupport::PathFromText;

bool IsRelativeWithoutParent(const fs::path& path) {
  if (path.empty() || path.native().find('\0') != fs::path::string_type::npos) return false;
  return !path.has_root_path() && std::ranges::find(path, fs::path("..")) == path.end();
}

bool IsInFolder(const fs::path& path, const fs::path& folder) {
  return std::ranges::mismatch(folder, path).in1 == folder.end();
}

// Returns the path of the resource's file with all symbolic links resolved. Resolves the links
// before it checks that the file is in the folder, because a link in the folder can refer to a file
// outside the folder. Returns `std::nullopt` in these cases:
// - `name` is empty or absolute, or has the element "..".
// - `name` contains NUL or an unpaired surrogate.
// - The file does not exist, or is not in the folder.
std::optional<fs::path> FindFile(const fs::path& folder, const UTF16String& name,
                                 const UTF16String& type) {
  std::error_code error;
  std::optional<fs::path> path = PathFromText(name);
  if (path && !fs::exists(folder / *path, error)) path = PathFromText(name + u"." + type);
  if (!path || !IsRelativeWithoutParent(*path)) return std::nullopt;
  const fs::path root = fs::canonical(folder, error);
  if (error) return std::nullopt;
  fs::path file = fs::canonical(root / *path, error);
  if (error || !IsInFolder(file, root)) return std::nullopt;
  return file;
}

}  // namespace

ResourceManager::~ResourceManager() = default;

FolderResourceManager::FolderResourceManager(fs::path folder) : folder_(std::move(folder)) {}

FolderResourceManager::~FolderResourceManager() = default;

bool FolderResourceManager::LoadResource(const UTF16String& name, const UTF16String& type,
                                         std::vector<unsigned char>& bytes) const {
  bytes.clear();
  const std::optional<fs::path> file = FindFile(folder_, name, type);
  if (!file) return false;
  try {
    const auto memory = orncore::filesupport::ReadRegularFile(*file);
    bytes.resize(memory->Bytes().size());
    if (!bytes.empty()) std::memcpy(bytes.data(), memory->Bytes().data(), bytes.size());
    return true;
  } catch (const orncore::config::ResultError&) {
    return false;
  }
}

}  // namespace ornui::utility
