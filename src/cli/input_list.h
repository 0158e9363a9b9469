#pragma once

#include "invocation.h"

/// Inputs that come from elsewhere than the command line.
namespace quillmate::cli {

/// Appends the lines of the list that --files-from names. Throws CommandFailure when there are none, and Failure.
void AddListedInputs(Invocation& invocation);

/// The input "-" is what comes from standard input: it becomes a file that lives as long as the run. Only for commands
/// that read sources. Throws CommandFailure.
void TakeStandardInput(Invocation& invocation);

/// What `path` is called in data: "-" for the file of standard input, else as it is.
void NameStandardInput(std::string& path);
bool ReadsStandardInput() noexcept;

/// All of standard input; throws CommandFailure when that is more than a document can have, or when it can't be read.
std::string ReadStandardInput();

}  // namespace quillmate::cli
