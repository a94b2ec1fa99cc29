#include "ornwhatsnewqt/src/LocalizedText.h"

#include <vector>

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>

namespace ornwhatsnewqt {

QString localizedText(std::string_view keyText, std::initializer_list<QString> arguments) {
  std::vector<orncore::config::UTF16String> texts;
  for (const QString& argument : arguments) texts.push_back(argument.toStdU16String());
  return QString::fromStdU16String(orncore::config::Localizer::Get().ZString(keyText, texts));
}

TranslatorDictionary::~TranslatorDictionary() = default;

std::optional<orncore::config::UTF8String> TranslatorDictionary::Find(std::string_view key) const {
  // translate() reads a key only up to the first NUL, so a key with a NUL has no translation.
  if (key.find('\0') != std::string_view::npos) return std::nullopt;
  const QByteArray source(key.data(), static_cast<qsizetype>(key.size()));
  const QString text = QCoreApplication::translate("ornwhatsnew", source.constData());
  // If there is no translation, translate() returns the key.
  if (text == QString::fromUtf8(source)) return std::nullopt;
  return text.toStdString();
}

}  // namespace ornwhatsnewqt
