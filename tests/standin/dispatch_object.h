#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <ole2.h>

namespace quillmate::standin {

/// How often the host was asked; and whether it answers.
struct Traffic {
  int names = 0;
  int lines = 0;
  /// Calls still to be turned away.
  int busy = 0;
};

/// An error of the object model, as the caller gets it told.
class Refused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The arguments of a call in the order in which they are written.
using Arguments = std::vector<const VARIANT*>;

struct Member {
  const wchar_t* name;
  /// Fills the result, which comes empty; throws Refused (ASCII).
  std::function<void(const Arguments&, VARIANT&)> answer;
};

/// An object of the model, as late-bound callers see it. The first member is the default member.
class DispatchObject final : public IDispatch {
 public:
  DispatchObject(Traffic& traffic, std::vector<Member> members) : traffic_(traffic), members_(std::move(members)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* exception, UINT*) override;

 private:
  ~DispatchObject() = default;

  Traffic& traffic_;
  std::vector<Member> members_;
  ULONG references_ = 1;
};

void GiveNumber(VARIANT& result, int number);
void GiveText(VARIANT& result, const std::u16string& text);
/// Takes over the reference.
void GiveObject(VARIANT& result, IDispatch* object);

/// Turns calls away in the ways hosts do.
class BusyFilter final : public IMessageFilter {
 public:
  explicit BusyFilter(Traffic& traffic) : traffic_(traffic) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override;
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD, DWORD) override { return static_cast<DWORD>(-1); }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) override { return PENDINGMSG_WAITDEFPROCESS; }

 private:
  Traffic& traffic_;
};

}  // namespace quillmate::standin
