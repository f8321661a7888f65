#include "host/console/BatchProgress.h"

#include <string>

#include "host/console/AgentLink.h"
#include "host/console/TraceRecorder.h"
#include "platform/Presenter.h"

namespace console {

namespace {

platform::Dictionary MakeProgress(int64_t count) {
  platform::Dictionary progress = platform::Dictionary::Create();
  progress.Set("Header", "Activating " + std::to_string(count) + (count == 1 ? " font" : " fonts"));
  progress.Set("MaxProgress", platform::Number::FromInteger(count));
  progress.Set("CurrentProgress", platform::Number::FromInteger(0));
  return progress;
}

}  // namespace

BatchProgress::BatchProgress(AgentLink& agent, TraceRecorder& trace) : agent_(agent), trace_(trace) {
  trace_.SetBatchObserver([this](int64_t count) {
    End();
    if (count > 0) Begin(count);
  });
}

BatchProgress::~BatchProgress() {
  trace_.SetBatchObserver(nullptr);
  End();
}

void BatchProgress::Begin(int64_t count) {
  platform::Dictionary progress = MakeProgress(count);
  platform::ShowProgress(progress);
  isShown_ = true;
  agent_.ObserveActivations([progress, count, done = int64_t{0}]() mutable {
    if (done == count) return;
    progress.Set("CurrentProgress", platform::Number::FromInteger(++done));
    platform::UpdateProgress(progress);
  });
}

void BatchProgress::End() {
  if (!isShown_) return;
  agent_.ObserveActivations(nullptr);
  platform::HideProgress();
  isShown_ = false;
}

}  // namespace console
