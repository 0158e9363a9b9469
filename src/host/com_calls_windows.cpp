#include <algorithm>
#include <array>

#include <quillmate/text/operations.h>
#include <quillmate/text/wide.h>

#include "com_calls_windows_p.h"

namespace quillmate::host {
namespace {

using Clock = std::chrono::steady_clock;

/// Between two tries at a busy host, in milliseconds.
constexpr DWORD kPause = 50;

/// Member names and values in the language of the object model: with the user's own language an Office in another
/// language refuses calls.
constexpr LCID kEnglish = 0x0409;

constexpr HRESULT Code(unsigned long code) { return static_cast<HRESULT>(code); }

/// The editor is in the middle of something, as when a cell is being edited.
constexpr HRESULT kEditorBusy = Code(0x800AC472);

constexpr std::array kBusy{RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER, RPC_E_SERVERCALL_REJECTED, kEditorBusy};

// RPC_S_SERVER_UNAVAILABLE, RPC_S_CALL_FAILED and RPC_S_CALL_FAILED_DNE as results.
constexpr std::array kGone{Code(0x800706BA),   Code(0x800706BE),      Code(0x800706BF),
                           RPC_E_SERVER_DIED,  RPC_E_SERVER_DIED_DNE, RPC_E_CONNECTION_TERMINATED,
                           RPC_E_CALL_CANCELED};

template <typename Codes>
bool Holds(const Codes& codes, HRESULT result) {
  return std::find(codes.begin(), codes.end(), result) != codes.end();
}

/// What a host says about a call that it refused.
class Refusal {
 public:
  Refusal() = default;
  ~Refusal() { Clear(); }
  Refusal(const Refusal&) = delete;
  Refusal& operator=(const Refusal&) = delete;

  EXCEPINFO* Out() {
    Clear();
    return &info_;
  }
  /// The host's own code in place of the general one.
  HRESULT Result(HRESULT result) {
    if (result != DISP_E_EXCEPTION) return result;
    if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
    return info_.scode != 0 ? info_.scode : result;
  }
  std::string Words() const {
    const BSTR said = info_.bstrDescription;
    std::string words = said == nullptr ? std::string() : text::Utf8FromWide({said, SysStringLen(said)});
    std::replace_if(
        words.begin(), words.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return std::string(text::Trim(words));
  }

 private:
  void Clear() noexcept {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
    info_ = {};
  }

  EXCEPINFO info_{};
};

}  // namespace

template <typename Call>
HRESULT ComCalls::Patiently(Call call) const {
  const Clock::time_point deadline = Clock::now() + patience_;
  HRESULT result = call();
  while (Holds(kBusy, result) && Clock::now() < deadline) {
    Sleep(kPause);
    result = call();
  }
  return result;
}

void ComCalls::Check(HRESULT result, const files::Failure& otherwise, std::string_view hostsWords) const {
  if (SUCCEEDED(result)) return;
  if (Holds(kBusy, result)) throw files::Failure(HostReason::kBusy, {}, {host_});
  if (Holds(kGone, result)) throw files::Failure(HostReason::kNoAnswer, {}, {host_});
  const std::string explained = hostsWords.empty() ? std::string() : " (" + std::string(hostsWords) + ")";
  throw files::Failure(HostReason::kRefused, otherwise, {}, {explained});
}

std::optional<ComObject> ComCalls::Running(const std::wstring& progId) {
  CLSID id;
  if (FAILED(CLSIDFromProgID(progId.c_str(), &id))) return std::nullopt;
  ComPointer<IUnknown> running;
  const HRESULT found = Patiently([&] { return GetActiveObject(id, nullptr, running.Out()); });
  const files::Failure notAsked(HostReason::kNotAsked, {}, {host_});
  if (Holds(kBusy, found)) Check(found, notAsked);
  if (FAILED(found)) return std::nullopt;
  ComObject application;
  Check(Patiently([&] {
          return running->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(application.dispatch.Out()));
        }),
        notAsked);
  return application;
}

DISPID ComCalls::Member(const ComObject& object, const wchar_t* name, const files::Failure& otherwise) {
  const std::pair<ComType, std::wstring> key(object.type, name);
  const auto known = members_.find(key);
  if (known != members_.end()) return known->second;
  std::wstring writable(name);
  LPOLESTR names = writable.data();
  DISPID member = DISPID_UNKNOWN;
  Check(Patiently([&] { return object.dispatch->GetIDsOfNames(IID_NULL, &names, 1, kEnglish, &member); }), otherwise);
  members_.emplace(key, member);
  return member;
}

ComValue ComCalls::Invoke(const ComObject& object, DISPID member, const files::Failure& otherwise,
                          const std::vector<VARIANT>& arguments) {
  // A call takes its arguments from the last to the first. They stay the caller's.
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  ComValue value;
  Refusal refusal;
  const HRESULT result = Patiently([&] {
    return refusal.Result(object.dispatch->Invoke(member, IID_NULL, kEnglish, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                                  &parameters, value.Out(), refusal.Out(), nullptr));
  });
  Check(result, otherwise, refusal.Words());
  return value;
}

ComValue ComCalls::Get(const ComObject& object, const wchar_t* member, const files::Failure& otherwise,
                       const std::vector<VARIANT>& arguments) {
  return Invoke(object, Member(object, member, otherwise), otherwise, arguments);
}

ComObject ComCalls::ObjectOf(const ComValue& value, ComType type, const files::Failure& otherwise) const {
  ComObject object;
  object.type = type;
  const VARIANT& given = value.Get();
  if ((given.vt != VT_DISPATCH && given.vt != VT_UNKNOWN) || given.punkVal == nullptr) Check(E_NOINTERFACE, otherwise);
  Check(Patiently([&] {
          return given.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(object.dispatch.Out()));
        }),
        otherwise);
  return object;
}

ComObject ComCalls::GetObject(const ComObject& object, const wchar_t* member, ComType type,
                              const files::Failure& otherwise) {
  return ObjectOf(Get(object, member, otherwise), type, otherwise);
}

ComObject ComCalls::Item(const ComObject& collection, const ComValue& key, ComType type,
                         const files::Failure& otherwise) {
  return ObjectOf(Invoke(collection, DISPID_VALUE, otherwise, {key.Get()}), type, otherwise);
}

int ComCalls::GetNumber(const ComObject& object, const wchar_t* member, const files::Failure& otherwise) {
  ComValue value = Get(object, member, otherwise);
  if (!value.Become(VT_I4)) Check(DISP_E_TYPEMISMATCH, otherwise);
  return static_cast<int>(value.Get().lVal);
}

std::wstring ComCalls::GetText(const ComObject& object, const wchar_t* member, const files::Failure& otherwise) {
  ComValue value = Get(object, member, otherwise);
  if (!value.Become(VT_BSTR)) Check(DISP_E_TYPEMISMATCH, otherwise);
  return std::wstring(value.Text());
}

}  // namespace quillmate::host
