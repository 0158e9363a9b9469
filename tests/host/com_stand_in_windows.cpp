#include "host/com_stand_in_windows.h"

#include <stdexcept>
#include <utility>

#include <quillmate/text/wide.h>

namespace quillmate::host {

StandInHost::StandInHost(const std::string& arguments) {
  child::Pipe orders = child::PipeToChild();
  child::Pipe answers = child::PipeFromChild();
  input_ = std::move(orders.write);
  output_ = std::move(answers.read);
  // It is beside the test program.
  process_ = child::Spawn(child::OwnProgram().parent_path() / "stand_in_host.exe", text::WideFromUtf8(arguments),
                          {std::move(orders.read), std::move(answers.write), child::OwnErrors()});
  if (ReadLine() != "bereit") throw std::runtime_error("stand_in_host.exe does not register");
}

StandInHost::~StandInHost() { End(); }

std::string StandInHost::End() {
  input_.Close();
  WaitForEnd();
  return ReadLine();
}

DWORD StandInHost::WaitForEnd() const { return child::WaitFor(process_); }

std::string StandInHost::ReadLine() const {
  std::string line;
  char character = 0;
  DWORD read = 0;
  while (ReadFile(output_.Get(), &character, 1, &read, nullptr) != 0 && read == 1 && character != '\n') {
    if (character != '\r') line += character;
  }
  return line;
}

}  // namespace quillmate::host
