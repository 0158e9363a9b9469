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

enum class ComTrouble {
  kRefused,  // this call failed; the next may succeed
  kBusy,     // still so after all the patience
  kGone      // the host has ended, or does not answer
};

class ComError : public HostError {
 public:
  ComError(ComTrouble trouble, const std::string& message) : HostError(message), trouble_(trouble) {}
  ComTrouble Trouble() const noexcept { return trouble_; }

 private:
  ComTrouble trouble_;
};

enum class ComType { kApplication, kEditor, kProjects, kProject, kComponents, kComponent, kCodeModule };

struct ComObject {
  ComPointer<IDispatch> dispatch;
  ComType type = ComType::kApplication;
};

/// Late-bound calls to one host. A member's name is looked up once for each type of object.
///
/// Every call waits for a busy host and throws ComError with a message for the user; `otherwise` is the message
/// (UTF-8) for a call that the host refuses. The host's own words are put after it.
class ComCalls {
 public:
  /// `host` is the name for messages.
  ComCalls(std::string host, std::chrono::milliseconds patience) : host_(std::move(host)), patience_(patience) {}

  /// The object registered as running under a program's name; nothing when there is none.
  std::optional<ComObject> Running(const std::wstring& progId);
  /// Numbers belong to one host's run.
  void ForgetMembers() noexcept { members_.clear(); }

  ComObject GetObject(const ComObject& object, const wchar_t* member, ComType type, const std::string& otherwise);
  /// An item of a collection by its position or name.
  ComObject Item(const ComObject& collection, const ComValue& key, ComType type, const std::string& otherwise);
  int GetNumber(const ComObject& object, const wchar_t* member, const std::string& otherwise);
  std::wstring GetText(const ComObject& object, const wchar_t* member, const std::string& otherwise);
  /// Arguments in the order in which they are written.
  ComValue Get(const ComObject& object, const wchar_t* member, const std::string& otherwise,
               const std::vector<VARIANT>& arguments = {});

 private:
  DISPID Member(const ComObject& object, const wchar_t* name, const std::string& otherwise);
  ComValue Invoke(const ComObject& object, DISPID member, const std::string& otherwise,
                  const std::vector<VARIANT>& arguments);
  ComObject ObjectOf(const ComValue& value, ComType type, const std::string& otherwise) const;
  template <typename Call>
  HRESULT Patiently(Call call) const;
  void Check(HRESULT result, const std::string& otherwise, std::string_view hostsWords = {}) const;

  std::string host_;
  std::chrono::milliseconds patience_;
  std::map<std::pair<ComType, std::wstring>, DISPID> members_;
};

}  // namespace quillmate::host
