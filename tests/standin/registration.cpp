#include "registration.h"

#include <map>
#include <stdexcept>

namespace quillmate::standin {
namespace {

constexpr const wchar_t* kDescription = L"Stand-in host for the tests";

// A class of its own for each program: two with one class would be taken for each other.
const std::map<std::string, const wchar_t*> kClasses{
    {"Excel", L"{54623FA8-EE17-41F9-BD33-B771B8FD8976}"},
    {"Word", L"{54329192-E1BB-4D11-BF22-8D69D3D68723}"},
    {"Access", L"{C07F622B-61FB-4910-87FA-CDFC861C7650}"},
    {"PowerPoint", L"{F9D474A0-9B02-4062-9CCF-0F6908AED85C}"},
    {"VisualBasic", L"{89C9FD20-90E0-4F43-8EA7-6CD74404B88E}"},
};

[[noreturn]] void Fail(const char* what, HRESULT result) {
  throw std::runtime_error(std::string(what) + " failed: " + std::to_string(result));
}

/// Sets the default value of a key; it lasts until the next start of the system.
bool Enter(HKEY root, const std::wstring& key, const std::wstring& value) {
  HKEY opened = nullptr;
  if (RegCreateKeyExW(root, key.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE, nullptr, &opened, nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  const LSTATUS set = RegSetValueExW(opened, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
  RegCloseKey(opened);
  return set == ERROR_SUCCESS;
}

CLSID ClassOf(const std::string& host) {
  const std::wstring program = std::wstring(host.begin(), host.end()) + L".Application";
  CLSID id;
  if (SUCCEEDED(CLSIDFromProgID(program.c_str(), &id))) return id;
  const std::wstring key = L"Software\\Classes\\" + program;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    if (Enter(root, key, kDescription) && Enter(root, key + L"\\CLSID", kClasses.at(host))) break;
  }
  const HRESULT result = CLSIDFromProgID(program.c_str(), &id);
  if (FAILED(result)) Fail("CLSIDFromProgID", result);
  return id;
}

/// The service that keeps the running objects may still be starting.
HRESULT Register(IDispatch* application, const CLSID& id, DWORD& cookie) {
  constexpr int kTries = 3;
  HRESULT result = E_FAIL;
  for (int attempt = 0; attempt < kTries && FAILED(result); ++attempt) {
    result = RegisterActiveObject(application, id, ACTIVEOBJECT_STRONG, &cookie);
  }
  return result;
}

}  // namespace

Registration::Registration(const std::string& host, IDispatch* application) : application_(application) {
  const HRESULT result = Register(application, ClassOf(host), cookie_);
  if (FAILED(result)) Fail("RegisterActiveObject", result);
  CoLockObjectExternal(application_, TRUE, FALSE);
}

Registration::~Registration() {
  RevokeActiveObject(cookie_, nullptr);
  CoLockObjectExternal(application_, FALSE, TRUE);
  CoDisconnectObject(application_, 0);
}

}  // namespace quillmate::standin
