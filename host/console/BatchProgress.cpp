#include "host/console/BatchProgress.h"

#include <sys/eventfd.h>
#include <unistd.h>

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

BatchProgress::BatchProgress(AgentLink& agent, TraceRecorder& trace)
    : agent_(agent), trace_(trace), stop_(eventfd(0, EFD_CLOEXEC)) {
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
  const platform::Dictionary shown = MakeProgress(count);
  platform::ShowProgress(shown);
  reader_ = std::thread([this, count] {
    platform::Dictionary progress = MakeProgress(count);
    int64_t done = 0;
    while (done < count && agent_.WaitForActivation(stop_.Get())) {
      progress.Set("CurrentProgress", platform::Number::FromInteger(++done));
      platform::UpdateProgress(progress);
    }
  });
}

void BatchProgress::End() {
  if (!reader_.joinable()) return;
  uint64_t one = 1;
  if (write(stop_.Get(), &one, sizeof one) != sizeof one) return;  // adds 1 to the eventfd
  reader_.join();
  if (read(stop_.Get(), &one, sizeof one) != sizeof one) return;
  platform::HideProgress();
}

}  // namespace console
