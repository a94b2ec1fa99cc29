// The application's resources: bytes by name and type.
//
// A host passes its own ResourceManager, or one of the two here: resources in a folder, resources
// in memory.
#ifndef ORNUI_UTILITY_RESOURCEMANAGER_H_
#define ORNUI_UTILITY_RESOURCEMANAGER_H_

#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace ornui::utility {

using orncore::string::UTF16String;

/// Loads resources: the interface that a host implements.
///
/// Threads: called on the thread that loads a list.
class ORN_EXPORT ResourceManager {
 public:
  ResourceManager() = default;
  ResourceManager(const ResourceManager&) = delete;
  ResourceManager& operator=(const ResourceManager&) = delete;
  virtual ~ResourceManager();

  /// Replaces `bytes` by those of the resource and returns true. False when there is no such
  /// resource, or it cannot be read; `bytes` is empty then.
  virtual bool LoadResource(const UTF16String& name, const UTF16String& type,
                            std::vector<unsigned char>& bytes) const = 0;
};

/// Resources in the files of a folder, read anew each time.
///
/// A resource is the file `<folder>/<name>`, or `<folder>/<name>.<type>` where the former does not
/// exist. A name may lead into folders below, with "/" between; it never leads outside: an empty
/// or an absolute name, one with a "..", a NUL or an unpaired surrogate in it, and a link that
/// points outside name no resource, and neither does anything but a regular file. Whoever may write
/// in the folder is trusted not to exchange it while it is being read.
///
/// Threads: safe from any.
class ORN_EXPORT FolderResourceManager final : public ResourceManager {
 public:
  /// The folder need not exist yet. A relative one is taken from the current directory of each
  /// load.
  explicit FolderResourceManager(std::filesystem::path folder);
  ~FolderResourceManager() override;

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override;

 private:
  std::filesystem::path folder_;
};

/// Resources in memory, found by exactly their name and type. What it overrides is described at the
/// interface.
///
/// Threads: filled before it is used; loading is safe from any thread while nobody adds.
class ORN_EXPORT MemoryResourceManager final : public ResourceManager {
 public:
  /// Holds nothing yet.
  MemoryResourceManager();
  ~MemoryResourceManager() override;

  /// Adds a resource, in place of one with the same name and type.
  void Add(UTF16String name, UTF16String type, std::vector<unsigned char> bytes);

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override;

 private:
  std::map<std::pair<UTF16String, UTF16String>, std::vector<unsigned char>> resources_;
};

}  // namespace ornui::utility

#endif  // ORNUI_UTILITY_RESOURCEMANAGER_H_
