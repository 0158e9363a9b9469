#include "options.h"

#include <array>
#include <map>
#include <stdexcept>
#include <string_view>

#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::standin {
namespace {

constexpr std::array kEditions{"Excel", "Word", "Access", "PowerPoint", "VisualBasic"};

const std::map<std::string_view, bool Options::*> kSwitches{{"--locked", &Options::locked},
                                                            {"--refuse-access", &Options::refuseAccess},
                                                            {"--stay", &Options::stay},
                                                            {"--help", &Options::help}};
const std::map<std::string_view, int Options::*> kNumbers{
    {"--many", &Options::many}, {"--long", &Options::longModule}, {"--busy", &Options::busy}};
const std::map<std::string_view, std::string Options::*> kNames{
    {"--edition", &Options::edition}, {"--version", &Options::version},     {"--vanish", &Options::vanish},
    {"--close", &Options::close},     {"--die-at", &Options::dieAt},        {"--withhold-code", &Options::withholdCode},
    {"--hang-at", &Options::hangAt},  {"--shorten-at", &Options::shortenAt}};

std::string HostNameOf(const std::string& edition) {
  for (const char* name : kEditions) {
    if (text::EqualsIgnoreCase(name, edition)) return name;
  }
  throw std::runtime_error("unknown edition: " + edition);
}

}  // namespace

Options ParseOptions(const std::vector<std::wstring>& arguments) {
  Options options;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string option = files::PathText(arguments[at]);
    const auto value = [&] {
      if (++at == arguments.size()) throw std::runtime_error("value missing: " + option);
      return text::CodeFromUtf8(files::PathText(arguments[at]));
    };
    if (const auto found = kSwitches.find(option); found != kSwitches.end()) {
      options.*found->second = true;
    } else if (option == "--unsaved") {
      ++options.unsaved;
    } else if (const auto number = kNumbers.find(option); number != kNumbers.end()) {
      options.*number->second = static_cast<int>(text::LeadingNumber(value()));
    } else if (const auto name = kNames.find(option); name != kNames.end()) {
      options.*name->second = value();
    } else if (option == "--sources") {
      while (at + 1 < arguments.size() && !arguments[at + 1].starts_with(L"--")) {
        options.sources.emplace_back(arguments[++at]);
      }
    } else {
      throw std::runtime_error("unknown option: " + option);
    }
  }
  options.edition = HostNameOf(options.edition);
  return options;
}

}  // namespace quillmate::standin
