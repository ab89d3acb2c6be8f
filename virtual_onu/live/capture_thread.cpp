/// @file
/// Start and end of the capture thread.
#include "live/capture_thread.h"

#include <brmgr_record.h>

namespace virtual_onu {

CaptureThread::CaptureThread(Device& device, std::uint32_t (*capture)())
    : device_(device), thread_([this, capture] {
        while (!ended_ || device_.pendingEvents() > 0) {
          capture();
        }
      }) {}

CaptureThread::~CaptureThread() {
  ended_ = true;
  // An event of a type that means nothing ends the wait for one. Where it finds no room, the thread
  // does not wait.
  device_.sendEvent(Bytes(sizeof(BrmgrEvent)));
  thread_.join();
}

}  // namespace virtual_onu
