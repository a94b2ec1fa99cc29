// Translates strings with the dictionary of a host description.
#ifndef HOSTS_PANEL_HOSTTRANSLATOR_H_
#define HOSTS_PANEL_HOSTTRANSLATOR_H_

#include <QtCore/QTranslator>

#include "hosts/common/HostDescription.h"

namespace hosts::panel {

/// A Qt translator with the translations of a host description. The context is "ornwhatsnew", and
/// the source text is the key. Qt queries the most recently installed translator first, so install
/// this translator after all others.
class HostTranslator final : public QTranslator {
 public:
  explicit HostTranslator(const common::HostDescription::Texts& dictionary)
      : dictionary_(dictionary) {}
  ~HostTranslator() override;

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* sourceText, const char* disambiguation,
                    int n) const override;

 private:
  const common::HostDescription::Texts dictionary_;
};

}  // namespace hosts::panel

#endif  // HOSTS_PANEL_HOSTTRANSLATOR_H_
