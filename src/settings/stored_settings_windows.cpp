#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>

// clang-format off
#include <windows.h>
#include <winreg.h>
// clang-format on

#include <quillmate/settings/settings_store.h>
#include <quillmate/text/wide.h>

#include "key_names_p.h"

namespace quillmate::settings {
namespace {

/// Characters of the longest value name.
constexpr DWORD kLongestName = 16383;
constexpr std::string_view kSpecialInKeys("\0", 1);
constexpr std::string_view kSpecialInSections("\0\\", 2);

using text::Utf8FromWide;
using text::WideFromUtf8;

/// An open key of the registry, or none.
class RegistryKey {
 public:
  RegistryKey() = default;
  ~RegistryKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool Open(const std::wstring& path) noexcept {
    return RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, &key_) == ERROR_SUCCESS;
  }
  bool Create(const std::wstring& path) noexcept {
    return RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr,
                           &key_, nullptr) == ERROR_SUCCESS;
  }
  HKEY Handle() const noexcept { return key_; }

 private:
  HKEY key_ = nullptr;
};

struct Value {
  DWORD type = REG_NONE;
  std::string bytes;
};

/// Another program may change the value between the question for its size and that for its bytes.
std::optional<Value> ReadValue(HKEY key, const std::wstring& name) {
  Value value;
  for (DWORD size = 256;;) {
    value.bytes.resize(size);
    const LSTATUS status =
        RegQueryValueExW(key, name.c_str(), nullptr, &value.type, reinterpret_cast<BYTE*>(value.bytes.data()), &size);
    value.bytes.resize(std::min<std::size_t>(size, value.bytes.size()));
    if (status == ERROR_SUCCESS) return value;
    if (status != ERROR_MORE_DATA) return std::nullopt;
  }
}

std::wstring WideText(const std::string& bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  if (text.ends_with(L'\0')) text.pop_back();
  return text;
}

/// The text with %NAME% replaced by the variables of the environment.
std::wstring Expanded(const std::wstring& text) {
  std::wstring expanded(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
  const DWORD size = ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
  if (size == 0 || size > expanded.size()) return text;
  expanded.resize(size - 1);
  return expanded;
}

/// Several texts, each with a null character after it, and one more at the end.
std::string ListText(const std::string& bytes) {
  std::wstring list = WideText(bytes);
  if (list.ends_with(L'\0')) list.pop_back();
  std::replace(list.begin(), list.end(), L'\0', L',');
  return Utf8FromWide(list);
}

/// Flags and colours are signed.
template <typename Number>
std::string NumberText(const std::string& bytes) {
  Number number = 0;
  if (bytes.size() != sizeof number) return {};
  std::memcpy(&number, bytes.data(), sizeof number);
  return std::to_string(number);
}

std::string TextOf(const Value& value) {
  switch (value.type) {
    case REG_SZ:
      return Utf8FromWide(WideText(value.bytes));
    case REG_EXPAND_SZ:
      return Utf8FromWide(Expanded(WideText(value.bytes)));
    case REG_MULTI_SZ:
      return ListText(value.bytes);
    case REG_DWORD:
      return NumberText<std::int32_t>(value.bytes);
    case REG_QWORD:
      return NumberText<std::int64_t>(value.bytes);
    default:
      return {};
  }
}

std::wstring ValueName(std::string_view key) { return WideFromUtf8(EncodeName(key, kSpecialInKeys)); }

class RegistrySettings final : public SettingsStore {
 public:
  explicit RegistrySettings(const std::string& settingsRoot)
      : root_(L"Software\\" + WideFromUtf8(settingsRoot) + L"\\") {}

  std::string ReadSetting(std::string_view section, std::string_view key) const override {
    RegistryKey opened;
    if (!opened.Open(PathOf(section))) return {};
    const std::optional<Value> value = ReadValue(opened.Handle(), ValueName(key));
    return value ? TextOf(*value) : std::string();
  }

  void WriteSetting(std::string_view section, std::string_view key, std::string_view value) override {
    RegistryKey opened;
    if (!opened.Create(PathOf(section))) return;
    const std::wstring text = WideFromUtf8(value);
    RegSetValueExW(opened.Handle(), ValueName(key).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

  void RemoveSettingSection(std::string_view section) override {
    RegDeleteTreeW(HKEY_CURRENT_USER, PathOf(section).c_str());
  }

  std::vector<std::string> SettingKeys(std::string_view section) const override {
    std::vector<std::string> keys;
    RegistryKey opened;
    if (!opened.Open(PathOf(section))) return keys;
    std::wstring name(kLongestName + 1, L'\0');
    for (DWORD i = 0;; ++i) {
      auto length = static_cast<DWORD>(name.size());
      if (RegEnumValueW(opened.Handle(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
          ERROR_SUCCESS) {
        break;
      }
      keys.push_back(DecodeName(Utf8FromWide({name.data(), length})));
    }
    std::sort(keys.begin(), keys.end(), KeyBefore);
    return keys;
  }

 private:
  std::wstring PathOf(std::string_view section) const {
    return root_ + WideFromUtf8(EncodeName(section, kSpecialInSections));
  }

  std::wstring root_;
};

}  // namespace

std::unique_ptr<SettingsStore> OpenSettings(const std::string& settingsRoot) {
  return std::make_unique<RegistrySettings>(settingsRoot);
}

}  // namespace quillmate::settings
