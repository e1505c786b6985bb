#include <gtest/gtest.h>
#include <memory>

#include <QApplication>

namespace {

class ApplicationEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    mApplication = std::make_unique<QApplication>(argc, argv);
  }
  void TearDown() override { mApplication.reset(); }

 private:
  std::unique_ptr<QApplication> mApplication;
};

const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

} // namespace
