#ifndef LUMADOT_FUZZ_WINDOW_H
#define LUMADOT_FUZZ_WINDOW_H

#include <wx/string.h>

#include <cstdint>
#include <string>

#include "ui/MainFrame.h"

namespace fuzz {

/// The real window on an empty simulated bus; made at the first call.
MainFrame& window();

/// The path that the next file dialogs are answered with: a file in memory.
std::string inputFile();
void writeInputFile(const std::uint8_t* data, std::size_t size);

/// Closes this file wherever it is open: what is left open on purpose would be thousands here.
void closeFile(const std::string& path);

/// The text of the message boxes since the last call, one after the other.
wxString takeMessages();

}  // namespace fuzz

#endif
