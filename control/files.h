#ifndef LUMADOT_CONTROL_FILES_H
#define LUMADOT_CONTROL_FILES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "control/failure.h"

// The user's files. Every failure is ExitCode::File and names the file.
namespace control {

Failure fileFailure(const std::string& path, const std::string& what, const std::string& hint);

/// The size in bytes of a file that can be read; folders, pipes, terminals and files of more than
/// `most` bytes cannot.
std::size_t readableSize(const std::string& path, std::size_t most);

/// All bytes of such a file.
std::vector<std::uint8_t> readWhole(const std::string& path, std::size_t most);

/// The first bytes of such a file, `limit` at most.
std::vector<std::uint8_t> readHead(const std::string& path, std::size_t limit);

/// Writes beside the file and renames, so that a failure leaves the old one. What is no regular
/// file is written to as it is.
void writeWhole(const std::string& path, std::span<const std::uint8_t> bytes);

/// Throws unless it is a folder that is there.
void requireFolder(const std::string& path);

}  // namespace control

#endif
