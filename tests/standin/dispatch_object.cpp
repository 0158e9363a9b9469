#include "dispatch_object.h"

namespace quillmate::standin {
namespace {

/// The answer of a host whose editor is in the middle of something.
constexpr auto kEditorBusy = static_cast<HRESULT>(0x800AC472UL);
constexpr auto kModelError = static_cast<HRESULT>(0x800A03ECUL);
/// Every third call that is turned away comes as far as the object.
constexpr int kWaysToBeBusy = 3;

void Explain(const char* words, EXCEPINFO* exception) {
  if (exception == nullptr) return;
  *exception = {};
  exception->scode = kModelError;
  const std::string text(words);
  exception->bstrDescription = SysAllocString(std::wstring(text.begin(), text.end()).c_str());
}

}  // namespace

HRESULT DispatchObject::QueryInterface(REFIID id, void** object) {
  const bool known = id == IID_IUnknown || id == IID_IDispatch;
  *object = known ? this : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

ULONG DispatchObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  ++traffic_.names;
  for (std::size_t number = 0; count == 1 && number < members_.size(); ++number) {
    if (_wcsicmp(names[0], members_[number].name) == 0) {
      ids[0] = static_cast<DISPID>(number);
      return S_OK;
    }
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT DispatchObject::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                               EXCEPINFO* exception, UINT*) {
  if (traffic_.busy > 0) {
    --traffic_.busy;
    return kEditorBusy;
  }
  const auto number = static_cast<std::size_t>(member);
  if (member < 0 || number >= members_.size()) return DISP_E_MEMBERNOTFOUND;
  // This model is there to be read.
  if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) return DISP_E_MEMBERNOTFOUND;
  Arguments arguments;
  for (UINT at = parameters->cArgs; at > 0; --at) arguments.push_back(&parameters->rgvarg[at - 1]);
  VARIANT ignored;
  VARIANT& answer = result == nullptr ? ignored : *result;
  VariantInit(&answer);
  try {
    members_[number].answer(arguments, answer);
  } catch (const Refused& refusal) {
    Explain(refusal.what(), exception);
    return DISP_E_EXCEPTION;
  }
  if (result == nullptr) VariantClear(&ignored);
  return S_OK;
}

void GiveNumber(VARIANT& result, int number) {
  result.vt = VT_I4;
  result.lVal = number;
}

void GiveText(VARIANT& result, const std::u16string& text) {
  const std::wstring wide(text.begin(), text.end());
  result.vt = VT_BSTR;
  result.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

void GiveObject(VARIANT& result, IDispatch* object) {
  result.vt = VT_DISPATCH;
  result.pdispVal = object;
}

HRESULT BusyFilter::QueryInterface(REFIID id, void** object) {
  const bool known = id == IID_IUnknown || id == IID_IMessageFilter;
  *object = known ? this : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

DWORD BusyFilter::HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) {
  const int way = traffic_.busy % kWaysToBeBusy;
  if (traffic_.busy <= 0 || way == 0) return SERVERCALL_ISHANDLED;
  --traffic_.busy;
  return way == 1 ? SERVERCALL_REJECTED : SERVERCALL_RETRYLATER;
}

}  // namespace quillmate::standin
