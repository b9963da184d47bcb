// What is left of a capture whose program is killed: every frame that it took.

#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "simulator/controller.h"
#include "tests/device/capture/naive_decoder.h"
#include "tests/support/temporary_folder.h"

namespace {

using naive::Bytes;
using namespace std::chrono_literals;

constexpr int Mode = 9;
constexpr int Planes = 4;
constexpr std::size_t TextFrame = 12 + 32 * 130 + 2;
constexpr std::size_t RawFrame = 4 + Planes * 512;
constexpr std::size_t RawHeader = 8;

class Killed : public testing::Test {
protected:
    /// Starts the capture; `lastFrame`: it kills itself after this frame.
    void start(int lastFrame = 0) {
        std::string program = LUMADOT_ENDLESS_CAPTURE;
        std::string place = folder.path().string();
        std::string mode = std::to_string(Mode);
        std::string last = std::to_string(lastFrame);
        char* arguments[] = {program.data(), place.data(), mode.data(), last.data(), nullptr};
        ASSERT_EQ(posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ), 0);
    }
    /// Waits for the program's end. Returns the signal that ended it, 0: none.
    int wait() const {
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    Bytes content(const char* ending) const {
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path().extension() == ending) {
                return support::readFile(entry.path());
            }
        }
        return {};
    }
    std::size_t size(const char* ending) const {
        std::error_code gone;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path(), gone)) {
            if (entry.path().extension() == ending) {
                return entry.file_size(gone);
            }
        }
        return 0;
    }

    /// The first `count` frames of both files are what the controller sent. Their time stamps rise.
    void expectWholeFrames(std::size_t count) const {
        simulator::ControllerOptions options;
        options.settings[0] = Mode;
        const simulator::Controller controller(options);
        const Bytes text = content(".txt");
        const Bytes raw = content(".raw");
        ASSERT_GE(text.size(), count * TextFrame);
        ASSERT_GE(raw.size(), RawHeader + count * RawFrame);
        for (std::size_t i = 0; i < count; ++i) {
            const Bytes planes = controller.capturedPlanes(static_cast<std::uint32_t>(i), Planes);
            const auto* const block = reinterpret_cast<const char*>(&text[i * TextFrame]);
            const std::string found(block, TextFrame);
            const auto stamp =
                static_cast<std::uint32_t>(std::stoul(found.substr(2, 8), nullptr, 16));
            ASSERT_EQ(found, naive::text(Mode, false, stamp, planes)) << "frame " << i;
            const auto from = raw.begin() + static_cast<std::ptrdiff_t>(RawHeader + i * RawFrame);
            ASSERT_EQ(Bytes(from, from + RawFrame), naive::raw(Mode, stamp, planes))
                << "frame " << i;
        }
    }

    support::TemporaryFolder folder;
    pid_t process = 0;
};

class KilledBetweenRounds : public Killed, public testing::WithParamInterface<int> {};

TEST_P(KilledBetweenRounds, LeavesEveryFrameWholeAndNoneMissing) {
    start(GetParam());
    ASSERT_EQ(wait(), SIGKILL);
    const auto frames = static_cast<std::size_t>(GetParam());
    EXPECT_EQ(content(".txt").size(), frames * TextFrame);
    EXPECT_EQ(content(".raw").size(), RawHeader + frames * RawFrame);
    expectWholeFrames(frames);
}

INSTANTIATE_TEST_SUITE_P(Frames, KilledBetweenRounds, testing::Values(1, 2, 3, 17, 100, 1234));

/// At a moment that nobody chose, the frame in progress may be missing, in whole or in part; those
/// before it may not.
TEST_F(Killed, AtAnyMomentLosesNoMoreThanTheFrameInProgress) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int kill = 0; kill < 8; ++kill) {
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            std::filesystem::remove(entry.path());
        }
        const std::size_t enough = (1 + random() % 300) * TextFrame;
        start();
        const auto limit = std::chrono::steady_clock::now() + 30s;
        while (size(".txt") < enough && std::chrono::steady_clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 1000));
        }
        ::kill(process, SIGKILL);
        ASSERT_EQ(wait(), SIGKILL);

        const std::size_t text = size(".txt") / TextFrame;
        const std::size_t raw = (size(".raw") - RawHeader) / RawFrame;
        ASSERT_GE(text * TextFrame, enough);
        EXPECT_LE(text, raw);
        EXPECT_LE(raw, text + 1);
        expectWholeFrames(text);
    }
}

}  // namespace
