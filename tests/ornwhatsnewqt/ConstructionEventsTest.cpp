// Tests that widgets can receive events while they are constructed.
#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <new>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QShowEvent>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <ornwhatsnewqt/PanelWidget.h>
#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/PanelHeader.h"
#include "ornwhatsnewqt/src/RatingCard.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::PanelHeader;
using ornwhatsnewqt::PanelWidget;
using ornwhatsnewqt::RatingCard;
using ornwhatsnewqt::WhatsNew;
using test_support::kMapChange;
using test_support::TestWorld;

/// Sends events to each `Widget` to which a child is added. An event filter of an application can
/// do the same.
template <class Widget>
class EventSender : public QObject {
 public:
  EventSender() { QCoreApplication::instance()->installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool isDue =
        event->type() == QEvent::ChildAdded && qobject_cast<Widget*>(watched) != nullptr;
    if (!isDue) return false;
    QEvent change(QEvent::FontChange);
    QResizeEvent resize(QSize(20, 20), QSize(10, 10));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QShowEvent show;
    for (QEvent* const sent : std::initializer_list<QEvent*>{&change, &resize, &escape, &show}) {
      QCoreApplication::sendEvent(watched, sent);
      ++events;
    }
    return false;
  }

  int events = 0;
};

/// Constructs a `Widget` in memory that contains no zero bytes, and sends events to it during
/// construction. Returns the number of events. An access through an uninitialised pointer probably
/// crashes the program.
template <class Widget, class... Arguments>
int constructDuringEvents(const Arguments&... arguments) {
  alignas(Widget) std::array<std::byte, sizeof(Widget)> memory;
  memory.fill(std::byte{0xA5});
  EventSender<Widget> sender;
  std::destroy_at(new (memory.data()) Widget(arguments...));
  return sender.events;
}

class ConstructionEventsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aPanelCanReceiveEventsDuringItsConstruction();
  void aHeaderCanReceiveEventsDuringItsConstruction();
  void aCardCanReceiveEventsDuringItsConstruction();
};

void ConstructionEventsTest::aPanelCanReceiveEventsDuringItsConstruction() {
  const TestWorld world;
  world.writeData({kMapChange});
  WhatsNew whatsNew(world.dataFile(), world.settings());
  QVERIFY(constructDuringEvents<PanelWidget>(&whatsNew) > 0);
}

void ConstructionEventsTest::aHeaderCanReceiveEventsDuringItsConstruction() {
  QWidget parent;
  QVERIFY(constructDuringEvents<PanelHeader>(&parent) > 0);
}

void ConstructionEventsTest::aCardCanReceiveEventsDuringItsConstruction() {
  QWidget parent;
  const ornwhatsnew::RatingRequest request{"EPIC-1", u"Map", u"", u""};
  QVERIFY(constructDuringEvents<RatingCard>(request, &parent) > 0);
}

const test_support::RegisteredTest<ConstructionEventsTest> kConstructionEventsTest;

}  // namespace

#include "ConstructionEventsTest.moc"
