#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/host/host_automation.h>

#include "com_values_windows_p.h"

namespace quillmate::host {

enum class ComType { kApplication, kEditor, kProjects, kProject, kComponents, kComponent, kCodeModule };

struct ComObject {
  ComPointer<IDispatch> dispatch;
  ComType type = ComType::kApplication;
};

/// Late-bound calls to one host. A member's name is looked up once for each type of object.
///
/// Every call waits for a busy host and throws files::Failure: HostReason::kBusy, kNoAnswer, or kRefused because of
/// `otherwise`, with the host's own words after it.
class ComCalls {
 public:
  /// `host` is the name for messages.
  ComCalls(std::string host, std::chrono::milliseconds patience) : host_(std::move(host)), patience_(patience) {}

  /// The object registered as running under a program's name; nothing when there is none.
  std::optional<ComObject> Running(const std::wstring& progId);
  /// Numbers belong to one host's run.
  void ForgetMembers() noexcept { members_.clear(); }

  ComObject GetObject(const ComObject& object, const wchar_t* member, ComType type, const files::Failure& otherwise);
  /// An item of a collection by its position or name.
  ComObject Item(const ComObject& collection, const ComValue& key, ComType type, const files::Failure& otherwise);
  int GetNumber(const ComObject& object, const wchar_t* member, const files::Failure& otherwise);
  std::wstring GetText(const ComObject& object, const wchar_t* member, const files::Failure& otherwise);
  /// Arguments in the order in which they are written.
  ComValue Get(const ComObject& object, const wchar_t* member, const files::Failure& otherwise,
               const std::vector<VARIANT>& arguments = {});

 private:
  DISPID Member(const ComObject& object, const wchar_t* name, const files::Failure& otherwise);
  ComValue Invoke(const ComObject& object, DISPID member, const files::Failure& otherwise,
                  const std::vector<VARIANT>& arguments);
  ComObject ObjectOf(const ComValue& value, ComType type, const files::Failure& otherwise) const;
  template <typename Call>
  HRESULT Patiently(Call call) const;
  void Check(HRESULT result, const files::Failure& otherwise, std::string_view hostsWords = {}) const;

  std::string host_;
  std::chrono::milliseconds patience_;
  std::map<std::pair<ComType, std::wstring>, DISPID> members_;
};

}  // namespace quillmate::host
