#include <cstdio>
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "object_model.h"
#include "registration.h"

namespace quillmate::standin {
namespace {

void Say(const std::string& line) {
  const std::string text = line + "\n";
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

/// Ends the host when nobody holds the other end of its input any more.
void WatchInput(HANDLE stop, DWORD mainThread) {
  std::thread([=] {
    char buffer[64];
    DWORD read = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof buffer, &read, nullptr) != 0 && read > 0) {
    }
    SetEvent(stop);
    PostThreadMessageW(mainThread, WM_QUIT, 0, 0);
  }).detach();
}

void AnswerCalls() {
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void Run(Options options) {
  Projects projects = MakeProjects(options);
  Model model{std::move(options), std::move(projects)};
  model.stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  model.traffic.busy = model.options.busy;
  BusyFilter filter(model.traffic);
  IDispatch* const application = MakeApplication(model);
  {
    const Registration registration(model.options.edition, application);
    CoRegisterMessageFilter(&filter, nullptr);
    if (!model.options.stay) WatchInput(model.stop, GetCurrentThreadId());
    Say("bereit");
    AnswerCalls();
    CoRegisterMessageFilter(nullptr, nullptr);
  }
  application->Release();
  Say("names " + std::to_string(model.traffic.names) + " lines " + std::to_string(model.traffic.lines));
}

}  // namespace
}  // namespace quillmate::standin

int wmain(int count, wchar_t** arguments) {
  using namespace quillmate::standin;
  if (FAILED(OleInitialize(nullptr))) return 1;
  try {
    Options options = ParseOptions(std::vector<std::wstring>(arguments + 1, arguments + count));
    if (options.help) {
      std::fputs(kUsage, stdout);
    } else {
      Run(std::move(options));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n%s", error.what(), kUsage);
    return 1;
  }
  OleUninitialize();
  return 0;
}
