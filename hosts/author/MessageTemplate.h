// Collects the key texts that translators translate, and writes them as a gettext template.
#ifndef HOSTS_AUTHOR_MESSAGETEMPLATE_H_
#define HOSTS_AUTHOR_MESSAGETEMPLATE_H_

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/common/HostDescription.h"

namespace hosts::author {

/// A gettext template. Each entry has the key of a key text as its context and the default text as
/// its source text. The entries are in the order in which the functions add their keys. There is no
/// entry for a key without a default text, or for a key that begins with `$$$/private/`.
class MessageTemplate {
 public:
  /// Adds the key texts of the changes in `dataFile`, from the columns that the panel localises.
  /// `name` is the name of the data file, for references and warnings. `dataFile` can contain any
  /// bytes.
  void AddDataFile(std::string_view name, std::string_view dataFile);

  /// Adds the key texts among the names and descriptions of the features of `host`. `name` is the
  /// name of the host description, for references and warnings. `json` is its content, in which the
  /// function searches for the lines of the keys.
  void AddFeatureTable(std::string_view name, std::string_view json,
                       const common::HostDescription& host);

  /// Adds the library's own key texts.
  void AddPanelTexts();

  /// Returns the template in the format of a PO file, in UTF-8.
  std::string Format() const;

  /// Returns the warnings about omitted key texts. A key text is omitted with a warning if it
  /// contains a NUL, or if its key already has a different default text.
  const std::vector<std::string>& Warnings() const { return warnings_; }

 private:
  struct Entry {
    std::string key;
    std::string defaultText;
    std::vector<std::string> comments;
    std::vector<std::string> references;
  };

  void AddKeyText(const std::string& reference, std::string_view text);

  std::vector<Entry> entries_;
  /// For each key, the index of its entry in `entries_`.
  std::map<std::string, std::size_t, std::less<>> indexes_;
  std::vector<std::string> warnings_;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_MESSAGETEMPLATE_H_
