// Measures the panel of the Qt companion without a screen: the time to open it, the time to scroll
// it, and its memory. All changes are new. The baseline opens only a QTextBrowser with the size and
// the text of the news page, without styles or links.
#include <algorithm>
#include <ctime>
#include <map>
#include <memory>
#include <vector>

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <QtCore/QEvent>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextBrowser>

#include <ornwhatsnewqt/WhatsNew.h>

#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

using ornwhatsnewqt::Settings;
using ornwhatsnewqt::WhatsNew;

constexpr int kRepetitions = 20;
constexpr int kFewChanges = 300;
constexpr int kManyChanges = 10'000;
constexpr int kScrollSteps = 200;

// A `WhatsNew` object with a data file of `rows` changes, and its window.
class SamplePanel {
 public:
  explicit SamplePanel(std::size_t rows) {
    UseSampleHost();
    QFile file(folder_.filePath(QStringLiteral("whatsnew.csv")));
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the data file");
    file.write(QByteArray::fromStdString(SampleFile(rows)));
    file.close();
    Settings settings = Settings::withoutServices();
    settings.settingsFile = folder_.filePath(QStringLiteral("settings.ini"));
    settings.stateGetter = store_.Getter();
    settings.stateSetter = store_.Setter();
    settings.firstStart = ornwhatsnewqt::FirstStart::ShowAll;
    whatsNew_ = std::make_unique<WhatsNew>(file.fileName(), settings);
  }

  // Resets the state, so that all changes are new. Opens the window and paints it.
  void Open() {
    store_.Clear();
    whatsNew_->showAction()->trigger();
    QCoreApplication::processEvents();
  }

  // Opens the window, and processes the event that lays out the rest of the news page. Before the
  // first paint, the page lays out only its visible part.
  void OpenCompletely() {
    Open();
    QCoreApplication::processEvents();
  }

  void Close() {
    Page().window()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  // Returns the news page of the open window. Ends the process if no window is open.
  static QTextBrowser& Page() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      auto* const page = window->findChild<QTextBrowser*>(QStringLiteral("newsPage"));
      if (page != nullptr && page->isVisible()) return *page;
    }
    qFatal("the panel is not open");
  }

 private:
  QTemporaryDir folder_;
  SampleStore store_;
  std::unique_ptr<WhatsNew> whatsNew_;
};

// Returns a panel with `rows` changes. All benchmarks with the same number of changes share one
// panel. Opens and closes each new panel once, so that no benchmark measures the loading of fonts.
SamplePanel& PanelOf(std::size_t rows) {
  static std::map<std::size_t, std::unique_ptr<SamplePanel>> panels;
  std::unique_ptr<SamplePanel>& panel = panels[rows];
  if (panel == nullptr) {
    panel = std::make_unique<SamplePanel>(rows);
    panel->Open();
    panel->Close();
  }
  return *panel;
}

void Panel(benchmark::State& state) {
  SamplePanel& panel = PanelOf(Rows(state));
  for (auto _ : state) {
    panel.Open();
    state.PauseTiming();
    panel.Close();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Panel)->Arg(kFewChanges)->Arg(kManyChanges)->Iterations(1)->Repetitions(kRepetitions);

void CompletePanel(benchmark::State& state) {
  SamplePanel& panel = PanelOf(Rows(state));
  for (auto _ : state) {
    panel.OpenCompletely();
    state.PauseTiming();
    panel.Close();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(CompletePanel)
    ->Arg(kFewChanges)
    ->Arg(kManyChanges)
    ->Iterations(1)
    ->Repetitions(kRepetitions);

void PlainText(benchmark::State& state) {
  SamplePanel& panel = PanelOf(Rows(state));
  panel.Open();
  const QString text = SamplePanel::Page().toPlainText();
  const QSize size = SamplePanel::Page().size();
  panel.Close();
  for (auto _ : state) {
    auto browser = std::make_unique<QTextBrowser>();
    browser->resize(size);
    browser->document()->setPlainText(text);
    browser->show();
    QCoreApplication::processEvents();
    state.PauseTiming();
    browser.reset();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(PlainText)
    ->Name("Baseline.Panel")
    ->Arg(kFewChanges)
    ->Arg(kManyChanges)
    ->Iterations(1)
    ->Repetitions(kRepetitions);

double ProcessorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Scrolls from the top to the end in equal steps. The counter "p99" is the 99th percentile of the
// processor times of the steps, in seconds.
void Scroll(benchmark::State& state) {
  SamplePanel& panel = PanelOf(Rows(state));
  panel.OpenCompletely();
  QScrollBar* const bar = SamplePanel::Page().verticalScrollBar();
  std::vector<double> seconds;
  for (auto _ : state) {
    seconds.clear();
    for (int step = 1; step <= kScrollSteps; ++step) {
      const double begin = ProcessorSeconds();
      bar->setValue(static_cast<int>(static_cast<qint64>(bar->maximum()) * step / kScrollSteps));
      QCoreApplication::processEvents();
      seconds.push_back(ProcessorSeconds() - begin);
    }
    state.PauseTiming();
    bar->setValue(0);
    state.ResumeTiming();
  }
  panel.Close();
  std::ranges::sort(seconds);
  state.counters["p99"] = seconds[seconds.size() * 99 / 100 - 1];
}
BENCHMARK(Scroll)->Arg(kManyChanges)->Iterations(1)->Repetitions(kRepetitions);

// Returns the number of bytes in all allocated blocks. `LiveBytes` would not count the strings of
// Qt, which Qt allocates with malloc.
double AllocatedBytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void PanelMemory(benchmark::State& state) {
  SamplePanel& panel = PanelOf(Rows(state));
  for (auto _ : state) {
    const double before = AllocatedBytes();
    panel.OpenCompletely();
    state.counters["open"] = AllocatedBytes() - before;
    panel.Close();
    state.counters["closed"] = AllocatedBytes() - before;
  }
}
BENCHMARK(PanelMemory)->Arg(kManyChanges)->Iterations(1)->Repetitions(kRepetitions);

}  // namespace
}  // namespace benchmarks

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
