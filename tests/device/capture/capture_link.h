#ifndef LUMADOT_TESTS_DEVICE_CAPTURE_CAPTURE_LINK_H
#define LUMADOT_TESTS_DEVICE_CAPTURE_CAPTURE_LINK_H

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/device/capture/naive_decoder.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/device_link.h"
#include "tests/support/temporary_folder.h"

namespace capture {

using naive::Bytes;

/// A frame as it came over the wire.
struct Frame {
    std::uint32_t clock;  ///< the controller's time stamp
    Bytes planes;         ///< everything behind it
};

/// A test of `receiveDump` on the simulated bus, into a folder of its own.
class CaptureLink : public support::DeviceLink {
protected:
    using Board = simulator::Board;

    /// A controller that is set to this input mode.
    std::shared_ptr<simulator::Controller> plug(int mode, Board board = Board::Standard);

    /// Captures until something ends it, into `place` unless said otherwise.
    void run(int mode) { run(mode, place); }
    void run(int mode, const std::filesystem::path& into);
    /// Captures this many frames.
    void run(int mode, int frames) {
        rounds.stopAfter(frames);
        run(mode);
    }

    /// The next reads bring these bytes, one after the other.
    void answers(const std::vector<Bytes>& replies);

    /// The dump replies in the bus log, in their order.
    std::vector<Frame> repliedFrames() const;

    /// The content of the only file in `place` with this ending (".txt", ".raw"); no file, or more
    /// than one, fails the test.
    std::string content(const std::string& ending) const;
    std::string text() const { return content(".txt"); }
    Bytes raw() const;
    std::vector<std::string> fileNames() const;

    /// The text file consists of these frames; `start` is what the time stamps have in common.
    void expectText(int mode, bool xl, const std::vector<Frame>& frames,
                    std::uint32_t start) const {
        EXPECT_EQ(text(), textOf(mode, xl, frames, start));
    }
    /// The raw file has its header and these frames.
    void expectRaw(int mode, const std::vector<Frame>& frames, std::uint32_t start) const {
        EXPECT_EQ(support::byteText(raw()), support::byteText(rawOf(mode, frames, start)));
    }
    static std::string textOf(int mode, bool xl, const std::vector<Frame>& frames,
                              std::uint32_t start);
    static Bytes rawOf(int mode, const std::vector<Frame>& frames, std::uint32_t start);
    /// The start that the text file's first frame tells.
    std::uint32_t startOf(const std::vector<Frame>& frames) const;

    support::TemporaryFolder folder;
    std::filesystem::path place = folder.path();
    support::CaptureRounds rounds;
};

/// Open files of this process in a folder.
int openFilesIn(const std::filesystem::path& folder);

}  // namespace capture

#endif
