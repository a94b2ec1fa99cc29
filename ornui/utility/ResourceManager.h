// The resources of the application: bytes by name and type.
//
// A host passes its own ResourceManager or one of these two: resources in a folder or in memory.
#ifndef ORNUI_UTILITY_RESOURCEMANAGER_H_
#define ORNUI_UTILITY_RESOURCEMANAGER_H_

#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace ornui::utility {

using orncore::string::UTF16String;

/// The interface that a host implements to load resources.
///
/// Threads: called on the thread that loads a list.
class ORN_EXPORT ResourceManager {
 public:
  ResourceManager() = default;
  ResourceManager(const ResourceManager&) = delete;
  ResourceManager& operator=(const ResourceManager&) = delete;
  virtual ~ResourceManager();

  /// Replaces the content of `bytes` with the resource and returns true. If the resource does not
  /// exist or cannot be read, clears `bytes` and returns false.
  virtual bool LoadResource(const UTF16String& name, const UTF16String& type,
                            std::vector<unsigned char>& bytes) const = 0;
};

/// Resources in the files of a folder. Every load reads the file.
///
/// A resource is the regular file `<folder>/<name>`; if that does not exist,
/// `<folder>/<name>.<type>`. A name may contain "/" for a file in a subfolder. Files outside the
/// folder are never loaded: an empty or absolute name, a name that contains "..", NUL or an
/// unpaired surrogate, and a link to a file outside name no resource. Processes that may write to
/// the folder are trusted not to replace it during a load.
///
/// Threads: safe to use from any thread.
class ORN_EXPORT FolderResourceManager final : public ResourceManager {
 public:
  /// `folder` need not exist yet. A relative path is resolved against the current directory at each
  /// load.
  explicit FolderResourceManager(std::filesystem::path folder);
  ~FolderResourceManager() override;

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override;

 private:
  std::filesystem::path folder_;
};

/// Resources in memory, found by their exact name and type. `ResourceManager` documents the
/// overridden method.
///
/// Threads: loading is safe from any thread while no thread adds a resource.
class ORN_EXPORT MemoryResourceManager final : public ResourceManager {
 public:
  /// Creates an empty manager.
  MemoryResourceManager();
  ~MemoryResourceManager() override;

  /// Adds a resource. Replaces one with the same name and type.
  void Add(UTF16String name, UTF16String type, std::vector<unsigned char> bytes);

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override;

 private:
  std::map<std::pair<UTF16String, UTF16String>, std::vector<unsigned char>> resources_;
};

}  // namespace ornui::utility

#endif  // ORNUI_UTILITY_RESOURCEMANAGER_H_
