#include "platform/Presenter.h"

#include <cstdio>
#include <string>

namespace platform {

namespace {

Presenter sPresenter;

Dictionary DefaultAnswer(const Dictionary& box) {
  std::string line = box.GetString("Kind").Text() + ":";
  for (const char* key : {"Header", "Message"}) {
    if (const String text = box.GetString(key); !text.IsEmpty()) line += " " + text.Text();
  }
  std::fprintf(stderr, "%s\n", line.c_str());
  Dictionary answer = Dictionary::Create();
  answer.Set("Button", Number::FromInteger(1));
  return answer;
}

}  // namespace

void SetPresenter(const Presenter* presenter) { sPresenter = presenter ? *presenter : Presenter(); }

Dictionary RunBox(const Dictionary& box) {
  if (!sPresenter.runBox) return DefaultAnswer(box);
  Dictionary answer(Value::Adopt(sPresenter.runBox(sPresenter.context, box.Ref())));
  return answer ? answer : Dictionary::Create();
}

void ShowProgress(const Dictionary& progress) {
  if (sPresenter.showProgress) sPresenter.showProgress(sPresenter.context, progress.Ref());
}
void UpdateProgress(const Dictionary& progress) {
  if (sPresenter.updateProgress) sPresenter.updateProgress(sPresenter.context, progress.Ref());
}
void HideProgress() {
  if (sPresenter.hideProgress) sPresenter.hideProgress(sPresenter.context);
}
void BringBoxToFront() {
  if (sPresenter.bringBoxToFront) sPresenter.bringBoxToFront(sPresenter.context);
}

}  // namespace platform
