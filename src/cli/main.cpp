#include <cstddef>
#include <string>
#include <vector>

#include <quillmate/files/failure.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/inventory/scan.h>
#include <quillmate/startup/edition.h>

#include "command_line.h"
#include "commands.h"
#include "input_list.h"
#include "messages.h"
#include "output.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

void WriteToStandardOutput(const std::string& text) {
  Output output(std::nullopt);
  output.Write(text);
  output.Finish();
}

/// After the texts that the command takes come its inputs.
void ExpandInputs(Invocation& invocation) {
  const auto first = invocation.inputs.begin() + static_cast<std::ptrdiff_t>(invocation.command->texts);
  const std::vector<std::string> inputs = ExpandWildcards({first, invocation.inputs.end()});
  invocation.inputs.erase(first, invocation.inputs.end());
  invocation.inputs.insert(invocation.inputs.end(), inputs.begin(), inputs.end());
}

void RunInvocation(Invocation& invocation) {
  if (invocation.help) {
    WriteToStandardOutput(HelpText(invocation.command));
  } else if (invocation.version) {
    WriteToStandardOutput(std::string(kProgramName) + " " + startup::ProgramVersion() + "\n");
  } else {
    AddListedInputs(invocation);
    ExpandInputs(invocation);
    TakeStandardInput(invocation);
    invocation.command->run(invocation);
  }
}

void EndInOrder() {
  inventory::StopScans();
  files::RemoveWorkFolders();
}

/// The one place where failures become messages and the exit status.
int RunProgram(const std::vector<std::string>& arguments) {
  Invocation invocation;
  try {
    ParseCommandLine(arguments, invocation);
    RunInvocation(invocation);
    return IsIncomplete() ? kExitFailed : kExitDone;
  } catch (const UsageError& error) {
    Complain(error.what());
    Complain(UsageLine(invocation.command));
    return kExitUsage;
  } catch (const CommandEnd& end) {
    return end.status;
  } catch (const ReaderGone&) {
    return kExitDone;
  } catch (const files::Failure& error) {
    Complain(error.what());
  } catch (const std::exception& error) {
    Complain(files::FailureText(error));
  }
  return invocation.command == nullptr ? kExitFailed : invocation.command->failed;
}

}  // namespace
}  // namespace quillmate::cli

int main(int argc, char** argv) {
  quillmate::cli::PrepareStandardStreams();
  quillmate::cli::ReturnLargeBlocks();
  const std::vector<std::string> arguments = quillmate::cli::Arguments(argc, argv);
  // One of the processes that a scan of the inventory lets read.
  if (arguments == std::vector<std::string>{quillmate::inventory::kReaderArgument}) {
    return quillmate::inventory::RunReader();
  }
  quillmate::cli::OnEndingSignal(quillmate::cli::EndInOrder);
  return quillmate::cli::RunProgram(arguments);
}
