#include "platform/Presenter.h"

#include <cstdio>

namespace platform {

namespace {

Presenter sPresenter;

Dictionary ClosedAnswer(const Dictionary& box) {
  std::fprintf(stderr, "%s: %s %s\n", box.GetString("Kind").CString(), box.GetString("Header").CString(),
               box.GetString("Message").CString());
  Dictionary answer = Dictionary::Create();
  answer.Set("Button", Number::FromInteger(1));
  return answer;
}

}  // namespace

void SetPresenter(const Presenter* presenter) { sPresenter = presenter ? *presenter : Presenter(); }

Dictionary RunBox(const Dictionary& box) {
  if (!sPresenter.runBox) return ClosedAnswer(box);
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

}  // namespace platform
