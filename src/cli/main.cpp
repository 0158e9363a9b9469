#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include <quillmate/codedb/index_files.h>
#include <quillmate/startup/edition.h>

#include "commands.h"
#include "interruption.h"
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

void RunInvocation(const Invocation& invocation) {
  if (invocation.help) {
    WriteToStandardOutput(HelpText(invocation.command));
  } else if (invocation.version) {
    WriteToStandardOutput(std::string(kProgramName) + " " + startup::ProgramVersion() + "\n");
  } else {
    invocation.command->run(invocation);
  }
}

/// The one place where failures become messages and the exit status.
int RunProgram(const std::vector<std::string>& arguments) {
  Invocation invocation;
  try {
    ParseCommandLine(arguments, invocation);
    RunInvocation(invocation);
    return kExitDone;
  } catch (const UsageError& error) {
    Complain(error.what());
    Complain(UsageLine(invocation.command));
    return kExitUsage;
  } catch (const ReaderGone&) {
    return kExitDone;
  } catch (const std::filesystem::filesystem_error& error) {
    Complain(codedb::PathText(error.path1()) + ": " + SystemReason(error.code()));
  } catch (const std::bad_alloc&) {
    Complain("Der Speicher reicht nicht");
  } catch (const std::exception& error) {
    Complain(error.what());
  }
  return kExitFailed;
}

}  // namespace
}  // namespace quillmate::cli

int main(int argc, char** argv) {
  quillmate::cli::PrepareStandardStreams();
  quillmate::cli::WatchSignals();
  return quillmate::cli::RunProgram(quillmate::cli::Arguments(argc, argv));
}
