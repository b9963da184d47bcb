#ifndef LUMADOT_FUZZ_COMMAND_LINE_H
#define LUMADOT_FUZZ_COMMAND_LINE_H

#include <string>
#include <vector>

namespace fuzz {

/// Runs lumadotctl on the bus as it is, in a folder of its own that is empty before: its exit code
/// is one of the documented ones, with --json the results are one document that tells the same
/// code, and everything that was taken from the library is given back. Returns the exit code.
int runCommandLine(const std::vector<std::string>& arguments);

/// A file of this name in that folder, which is there when `runCommandLine` starts.
void giveFile(const std::string& name, const std::string& content);

}  // namespace fuzz

#endif
