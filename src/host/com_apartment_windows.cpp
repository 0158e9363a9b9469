#include <algorithm>

#include "com_apartment_windows_p.h"

namespace quillmate::host {
namespace {

/// A waiting thread looks at its clock this many times before a call is given up.
constexpr int kLooks = 4;

/// The filter is asked whenever a message arrives; so one is sent now and then.
VOID CALLBACK Wake(PTP_CALLBACK_INSTANCE, PVOID thread, PTP_TIMER) {
  PostThreadMessageW(*static_cast<const DWORD*>(thread), WM_NULL, 0, 0);
}

/// Gives up calls that last too long. Rejected calls come back to the caller at once, who tries again himself: a host
/// may also be busy in ways that only the result of the call tells.
class CallWatch final : public IMessageFilter {
 public:
  explicit CallWatch(std::chrono::milliseconds limit) : limit_(limit) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = id == IID_IUnknown || id == IID_IMessageFilter;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
    return SERVERCALL_ISHANDLED;
  }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD, DWORD) override { return static_cast<DWORD>(-1); }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD elapsed, DWORD) override {
    return std::chrono::milliseconds(elapsed) >= limit_ ? PENDINGMSG_CANCELCALL : PENDINGMSG_WAITDEFPROCESS;
  }

 private:
  ~CallWatch() = default;

  std::chrono::milliseconds limit_;
  ULONG references_ = 1;
};

}  // namespace

ComApartment::ComApartment(std::chrono::milliseconds limit)
    : thread_(GetCurrentThreadId()), initialized_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
  if (!initialized_) return;
  auto* const watch = new CallWatch(limit);
  filtering_ = SUCCEEDED(CoRegisterMessageFilter(watch, earlierFilter_.Out()));
  watch->Release();
  timer_ = CreateThreadpoolTimer(Wake, &thread_, nullptr);
  if (timer_ == nullptr) return;
  const auto period = std::max<std::chrono::milliseconds>(limit / kLooks, std::chrono::milliseconds(1));
  FILETIME atOnce{};
  SetThreadpoolTimer(timer_, &atOnce, static_cast<DWORD>(period.count()), 0);
}

ComApartment::~ComApartment() {
  if (timer_ != nullptr) {
    SetThreadpoolTimer(timer_, nullptr, 0, 0);
    WaitForThreadpoolTimerCallbacks(timer_, TRUE);
    CloseThreadpoolTimer(timer_);
  }
  if (filtering_) {
    ComPointer<IMessageFilter> ours;
    CoRegisterMessageFilter(earlierFilter_.Get(), ours.Out());
  }
  earlierFilter_.Reset();
  if (initialized_) CoUninitialize();
}

}  // namespace quillmate::host
