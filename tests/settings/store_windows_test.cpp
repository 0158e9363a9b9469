#include <cstdint>
#include <string>

// clang-format off
#include <windows.h>
#include <winreg.h>
// clang-format on

#include <gtest/gtest.h>

#include <quillmate/settings/settings_store.h>

namespace quillmate::settings {
namespace {

constexpr const wchar_t* kKey = L"Software\\Qm_Test\\Qm_Quill_Test\\optionen";

/// Settings in the registry under a path of their own.
class RegistryTest : public ::testing::Test {
 protected:
  ~RegistryTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Qm_Test"); }

  static void Put(const wchar_t* name, DWORD type, const void* bytes, std::size_t size) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kKey, name, type, bytes, static_cast<DWORD>(size)), ERROR_SUCCESS);
  }
  std::string Text(std::string_view key) const { return store_->ReadSetting("optionen", key); }

  const std::unique_ptr<SettingsStore> store_ = OpenSettings("Qm_Test\\Qm_Quill_Test");
};

TEST_F(RegistryTest, SectionsAreKeysAndNamesStandPlainly) {
  store_->WriteSetting("optionen", "a/b c%\xC3\xA4", "gr\xC3\xBC\xC3\x9F\xE2\x82\xAC");
  wchar_t text[32] = L"";
  DWORD size = sizeof text;
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, kKey, L"a/b c%25\u00e4", RRF_RT_REG_SZ, nullptr, text, &size),
            ERROR_SUCCESS);
  EXPECT_STREQ(text, L"gr\u00fc\u00df\u20ac");
  store_->RemoveSettingSection("OPTIONEN");
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, kKey, nullptr, RRF_RT_ANY, nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryTest, OtherKindsOfValuesAreReadAsTexts) {
  const std::int32_t flag = -1;
  const std::int64_t large = 1LL << 40;
  Put(L"dword", REG_DWORD, &flag, sizeof flag);
  Put(L"qword", REG_QWORD, &large, sizeof large);
  Put(L"multi", REG_MULTI_SZ, L"Courier New\0" L"12\0", sizeof L"Courier New\0" L"12\0");
  Put(L"expand", REG_EXPAND_SZ, L"%SystemRoot%\\x", sizeof L"%SystemRoot%\\x");
  Put(L"bare", REG_SZ, L"ab", 2 * sizeof(wchar_t));
  Put(L"odd", REG_SZ, L"ab", 3);
  Put(L"short", REG_DWORD, &flag, 1);
  Put(L"binary", REG_BINARY, &flag, sizeof flag);
  Put(L"long", REG_SZ, std::wstring(100000, L'x').c_str(), 100001 * sizeof(wchar_t));
  EXPECT_EQ(Text("dword"), "-1");
  EXPECT_EQ(Text("QWORD"), "1099511627776");
  EXPECT_EQ(Text("multi"), "Courier New,12");
  EXPECT_TRUE(Text("expand").ends_with("s\\x")) << Text("expand");
  EXPECT_EQ(Text("bare"), "ab");
  EXPECT_EQ(Text("odd"), "a");
  EXPECT_EQ(Text("short") + Text("binary"), "");
  EXPECT_EQ(Text("long"), std::string(100000, 'x'));
}

}  // namespace
}  // namespace quillmate::settings
