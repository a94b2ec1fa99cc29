// Gives a list access to the resources of the host. A resource is a sequence of bytes with a name
// and a type.
//
// A host passes a ResourceManager to the constructor of a list. The list loads its data file
// through this object. The host can use FolderResourceManager or its own implementation.
#ifndef ORNUI_UTILITY_RESOURCEMANAGER_H_
#define ORNUI_UTILITY_RESOURCEMANAGER_H_

#include <filesystem>
#include <vector>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace ornui::utility {

using orncore::string::UTF16String;

/// The interface that a host implements to load resources. An exception that an implementation
/// throws propagates out of the constructor of the list.
///
/// Threads: the list calls `LoadResource` on the thread that constructs the list.
class ORN_EXPORT ResourceManager {
 public:
  ResourceManager() = default;
  ResourceManager(const ResourceManager&) = delete;
  ResourceManager& operator=(const ResourceManager&) = delete;
  virtual ~ResourceManager();

  /// Replaces the content of `bytes` with the resource and returns true. If the resource does not
  /// exist or cannot be read, clears `bytes` and returns false.
  ///
  /// For a data file, `name` is the path that the host passed to the list, and `type` is "csv".
  virtual bool LoadResource(const UTF16String& name, const UTF16String& type,
                            std::vector<unsigned char>& bytes) const = 0;
};

/// Loads resources from the files of a folder. `ResourceManager` documents the overridden method.
/// Every call to `LoadResource` reads the file, and nothing is cached.
///
/// A resource is the regular file `<folder>/<name>`. If nothing exists at that path, it is the
/// regular file `<folder>/<name>.<type>`. A name may contain "/" for a file in a subfolder.
///
/// Does not load files outside the folder. These names have no resource:
/// - an empty name, or an absolute path;
/// - a path with the element "..";
/// - a name with NUL or an unpaired surrogate;
/// - a name that refers to a file outside the folder through a symbolic link.
///
/// The class trusts processes that can write to the folder. Such a process could replace a file
/// with a symbolic link during a load, and the load could then read a file outside the folder.
///
/// Threads: safe to use from any thread.
class ORN_EXPORT FolderResourceManager final : public ResourceManager {
 public:
  /// Stores the path of the folder, which need not exist yet. Each load resolves a relative path
  /// against the current directory of the process.
  explicit FolderResourceManager(std::filesystem::path folder);
  ~FolderResourceManager() override;

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override;

 private:
  std::filesystem::path folder_;
};

}  // namespace ornui::utility

#endif  // ORNUI_UTILITY_RESOURCEMANAGER_H_
