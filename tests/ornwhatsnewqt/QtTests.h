// Joins the QTest classes of the Qt companion into one program. The first argument of the program
// is the name of a class, and the other arguments are for QTest. A process runs only one class,
// because tests change the state of the application.
#ifndef TESTS_ORNWHATSNEWQT_QTTESTS_H_
#define TESTS_ORNWHATSNEWQT_QTTESTS_H_

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

namespace test_support {

/// Registers a function that runs a test class. Create objects of this class only at namespace
/// scope, so that `main` finds the function.
class RegisteredMain {
 public:
  /// Receives the arguments of the program from the name of the class on. Returns the exit status
  /// of the program.
  using Main = int (*)(int argc, char** argv);

  /// Registers `main` for the class `name`. Does not copy `name`.
  RegisteredMain(const char* name, Main main);
};

/// Registers a test class. As with `QTEST_MAIN`, the program creates an `Application` before the
/// test object. For tests without windows, `Application` is `QCoreApplication`.
///
///     const RegisteredTest<PanelStyleTest> kPanelStyleTest;
template <class Test, class Application = QApplication>
class RegisteredTest : public RegisteredMain {
 public:
  RegisteredTest() : RegisteredMain(Test::staticMetaObject.className(), &runTest) {}

 private:
  static int runTest(int argc, char** argv) {
    const Application application(argc, argv);
    Application::setAttribute(Qt::AA_Use96Dpi);
    Test test;
    return QTest::qExec(&test, argc, argv);
  }
};

}  // namespace test_support

#endif  // TESTS_ORNWHATSNEWQT_QTTESTS_H_
