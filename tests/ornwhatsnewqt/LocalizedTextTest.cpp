#include "ornwhatsnewqt/src/LocalizedText.h"

#include <memory>

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtTest/QTest>

#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::localizedText;
using ornwhatsnewqt::TranslatorDictionary;

QString textOfFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot open '%s'", qPrintable(path));
  return QString::fromUtf8(file.readAll());
}

/// Returns the keys in the sources of the library and of the companion. Omits private keys, which
/// translators do not translate.
QSet<QString> keysInSources() {
  static const QRegularExpression key(QStringLiteral(R"("(\$\$\$/(?!private/)[\w/]+)=)"));
  QSet<QString> keys;
  for (const char* const folder : {"/ornwhatsnew", "/ornwhatsnewqt"}) {
    QDirIterator files(QStringLiteral(ORNWHATSNEW_SOURCES) + QString::fromLatin1(folder),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
      const QString text = textOfFile(files.next());
      // Remove the comments, because their examples are not strings of the library.
      static const QRegularExpression comment(QStringLiteral("//[^\n]*"));
      auto matches = key.globalMatch(QString(text).remove(comment));
      while (matches.hasNext()) keys.insert(matches.next().captured(1));
    }
  }
  return keys;
}

class LocalizedTextTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void returnsTheDefaultWithoutATranslator();
  void asksTheTranslatorsOfTheApplication();
  void keepsATextWithANul();
  void germanHasATextForEveryKey();
  void germanHasNoTextForAnUnknownKey();
  void germanTextsKeepThePlaceholders();

 private:
  QTranslator german_;
  std::unique_ptr<test_support::TestWorld> world_;
};

void LocalizedTextTest::init() {
  world_ = std::make_unique<test_support::TestWorld>();
  orncore::config::Localizer::Get().SetDictionary(std::make_shared<TranslatorDictionary>());
  QVERIFY(german_.load(QStringLiteral(":/ornwhatsnewqt/ornwhatsnew_de.qm")));
}

void LocalizedTextTest::cleanup() {
  QCoreApplication::removeTranslator(&german_);
  world_.reset();
}

void LocalizedTextTest::returnsTheDefaultWithoutATranslator() {
  QCOMPARE(
      localizedText("$$$/ornwhatsnewqt/Action/ShowCount=What's New (@0)", {QStringLiteral("3")}),
      QStringLiteral("What's New (3)"));
}

void LocalizedTextTest::asksTheTranslatorsOfTheApplication() {
  QCoreApplication::installTranslator(&german_);
  QCOMPARE(
      localizedText("$$$/ornwhatsnewqt/Action/ShowCount=What's New (@0)", {QStringLiteral("3")}),
      QStringLiteral("Was ist neu (3)"));
  QCOMPARE(localizedText("$$$/unknown=Default ^B"), QStringLiteral("Default \u2022"));
}

void LocalizedTextTest::keepsATextWithANul() {
  using namespace std::string_view_literals;
  QCOMPARE(localizedText("Faster\0map"sv), QStringLiteral("Faster\0map"));
}

void LocalizedTextTest::germanHasATextForEveryKey() {
  const QSet<QString> keys = keysInSources();
  QVERIFY(keys.contains(QStringLiteral("$$$/ornwhatsnew/Feature/Item/Unlock/Off")));
  QVERIFY(keys.contains(QStringLiteral("$$$/ornwhatsnewqt/Action/Show")));
  for (const QString& key : keys) {
    const QString text = german_.translate("ornwhatsnew", key.toLatin1().constData());
    QVERIFY2(!text.isEmpty(), qPrintable(key));
  }
}

void LocalizedTextTest::germanHasNoTextForAnUnknownKey() {
  static const QRegularExpression entry(QStringLiteral("\nmsgid \"(.+)\""));
  const QSet<QString> keys = keysInSources();
  auto entries = entry.globalMatch(textOfFile(
      QStringLiteral(ORNWHATSNEW_SOURCES "/ornwhatsnewqt/translations/ornwhatsnew_de.po")));
  QVERIFY(entries.hasNext());
  while (entries.hasNext()) {
    const QString key = entries.next().captured(1);
    QVERIFY2(keys.contains(key), qPrintable(key));
  }
}

// In the German catalog, the comment of each entry describes the English string and its
// placeholders.
void LocalizedTextTest::germanTextsKeepThePlaceholders() {
  static const QRegularExpression entry(
      QStringLiteral("#\\. (.+)\nmsgctxt .+\nmsgid .+\nmsgstr \"(.*)\""));
  auto entries = entry.globalMatch(textOfFile(
      QStringLiteral(ORNWHATSNEW_SOURCES "/ornwhatsnewqt/translations/ornwhatsnew_de.po")));
  QVERIFY(entries.hasNext());
  while (entries.hasNext()) {
    const auto match = entries.next();
    for (const QString& placeholder : {QStringLiteral("@0"), QStringLiteral("@1")}) {
      QVERIFY2(match.captured(1).contains(placeholder) == match.captured(2).contains(placeholder),
               qPrintable(match.captured(0)));
    }
  }
}

const test_support::RegisteredTest<LocalizedTextTest, QCoreApplication> kLocalizedTextTest;

}  // namespace

#include "LocalizedTextTest.moc"
