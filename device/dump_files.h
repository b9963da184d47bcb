#ifndef LUMADOT_DEVICE_DUMP_FILES_H
#define LUMADOT_DEVICE_DUMP_FILES_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "device/input_mode.h"

namespace dump {

/// The files of one capture in a folder, named after the time (UTC) at which it starts:
/// "/%d%m%y_%H%M%S_lumadot_dump.txt", and ".raw" for the modes that have one. Every frame is
/// appended through a freshly opened file, so that a frame once written is safe from whatever comes
/// after. A file that cannot be opened is left out for that frame.
class Files {
public:
    /// `folder` in the encoding of file names (native_file.h). Starts the raw file with its header.
    Files(const std::string& folder, const InputModeInfo& mode);

    bool hasRaw() const { return hasRaw_; }
    const std::string& textPath() const { return text_; }
    const std::string& rawPath() const { return raw_; }  ///< if there is one
    // False: the block is not in the file, or not whole. A round of a capture opens the text file
    // even when it has nothing to write.
    bool appendRaw(std::span<const std::uint8_t> block) const;
    bool appendText(std::string_view block) const;

private:
    std::string text_;
    std::string raw_;
    bool hasRaw_ = false;
};

}  // namespace dump

#endif
