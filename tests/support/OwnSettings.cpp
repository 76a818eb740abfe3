// Gives a test program settings and user folders of its own, in English, before its first test: linked in, it acts by
// itself. No test ever sees or touches a user's settings.
#include "localization/Localization.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

namespace tessaly::tests {
namespace {

class OwnSettings final : public testing::Environment {
 public:
  void SetUp() override {
    home_ = std::make_unique<TemporaryFolder>();
    setenv("TESSALY_HOME", home_->path().c_str(), 1);
    Localization::setLanguageOverride(AppLanguage::english);
  }

  void TearDown() override { home_.reset(); }

 private:
  std::unique_ptr<TemporaryFolder> home_;
};

[[maybe_unused]] testing::Environment* const registered = testing::AddGlobalTestEnvironment(new OwnSettings);

}  // namespace
}  // namespace tessaly::tests
