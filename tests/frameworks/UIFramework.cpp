#include "frameworks/UIFramework.h"

#include <stdlib.h>

using platform::Dictionary;
using platform::Number;
using platform::Value;

namespace framework_tests {

namespace {

std::string Describe(const char* what, platform::ValueRef progress) {
  const Dictionary shown(Value::Retain(progress));
  return std::string(what) + " " + std::to_string(shown.GetInteger("CurrentProgress"));
}

}  // namespace

UIFrameworkTest::UIFrameworkTest() : former_(platform::GetPlaces()) {
  setenv("LC_ALL", "C", 1);
  platform::Places places = former_;
  places.preferencesFile = PreferencesFile();
  platform::SetPlaces(places);
  bundle_ = platform::Bundle::Create(APP_DIR "/agent/PluginFiles/VelorantPlugins.framework");
  EXPECT_TRUE(bundle_);
#define RESOLVE(name, result, parameters)                                         \
  name = reinterpret_cast<result(*) parameters>(bundle_->FunctionForName(#name)); \
  EXPECT_NE(name, nullptr) << #name;
  UI_FRAMEWORK_FUNCTIONS(RESOLVE)
#undef RESOLVE

  platform::Presenter presenter;
  presenter.context = this;
  presenter.runBox = [](void* context, platform::ValueRef box) {
    auto* self = static_cast<UIFrameworkTest*>(context);
    self->boxes_.emplace_back(Value::Retain(box));
    if (self->whileShown_) self->whileShown_();
    return Value(self->answer_).Release();
  };
  presenter.showProgress = [](void* context, platform::ValueRef shown) { Note(context, Describe("show", shown)); };
  presenter.updateProgress = [](void* context, platform::ValueRef shown) { Note(context, Describe("update", shown)); };
  presenter.hideProgress = [](void* context) { Note(context, "hide"); };
  presenter.bringBoxToFront = [](void* context) { Note(context, "front"); };
  platform::SetPresenter(&presenter);
  Start();
}

UIFrameworkTest::~UIFrameworkTest() {
  platform::SetPresenter(nullptr);
  platform::SetPlaces(former_);
}

void UIFrameworkTest::Note(void* context, const std::string& text) {
  static_cast<UIFrameworkTest*>(context)->progress_.push_back(text);
}

void UIFrameworkTest::Start(const Dictionary& details) { EXPECT_EQ(VPFInitializeFramework(details.Ref()), 0); }

std::string UIFrameworkTest::Localized(const char* key) {
  return platform::String(Value::Adopt(VPFLocalizedString(key))).Text();
}

void UIFrameworkTest::Answer(int64_t button, const char* key, const Value& value) {
  answer_ = Dictionary::Create();
  answer_.Set("Button", Number::FromInteger(button));
  if (key) answer_.Set(key, value);
}

}  // namespace framework_tests
