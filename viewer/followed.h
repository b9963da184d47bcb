#ifndef LUMADOT_VIEWER_FOLLOWED_H
#define LUMADOT_VIEWER_FOLLOWED_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "recording/recording.h"
#include "viewer/survey.h"

namespace viewer {

/// What is known of a recording so far.
struct State {
    std::uint64_t frames = 0;
    std::uint64_t durationMs = 0;
    std::uint64_t damages = 0;
    std::uint64_t gaps = 0;
    std::uint64_t bytesDone = 0;  ///< of the file, indexed
    std::uint64_t bytes = 0;      ///< of the file
    std::uint64_t surveyed = 0;   ///< frames
    std::uint8_t highestDigit = 0;
    bool indexed = false;  ///< to the present end of the file
    bool stopped = false;  ///< on request
    std::string error;     ///< why it does not go on; empty: it does
};

/// A recording that is looked at while a thread makes its index, looks for gaps, and follows the
/// file as it grows. Its functions are for one thread, which the other one makes way for at once.
class Followed {
public:
    static constexpr std::chrono::milliseconds LookInterval{100};  ///< at the file's size

    /// Opens a file; if it has a frame, one is there when this returns. `news` is called by the
    /// thread when the state has changed, and not again before `state` has been called. Throws
    /// recording::Error.
    Followed(std::filesystem::path path, std::function<void()> news);
    ~Followed();
    Followed(const Followed&) = delete;
    Followed& operator=(const Followed&) = delete;

    const std::filesystem::path& path() const { return path_; }
    State state();

    /// Stops the thread's work, and lets it go on.
    void stop(bool stopped);

    /// See Recording::setMode.
    void setMode(std::optional<std::uint8_t> mode);

    /// Returns what `work` makes of the recording; the thread waits meanwhile.
    template <class Work>
    auto use(Work work) {
        const Turn turn(*this);
        return work(recording_);
    }
    template <class Work>
    auto useSurvey(Work work) {
        const Turn turn(*this);
        return work(recording_, survey_);
    }

private:
    /// While it lives the thread waits.
    class Turn {
    public:
        explicit Turn(Followed& owner);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        Followed& owner_;
        std::unique_lock<std::mutex> lock_;
    };

    void run();
    void work();
    bool hasGrown() const;
    bool index(const recording::Progress& progress);
    void publish();
    void tell();
    void tellNowAndThen();

    std::filesystem::path path_;
    std::function<void()> news_;
    recording::Recording recording_;
    Survey survey_;
    std::uint64_t seenBytes_ = 0;  ///< size of the file when it was indexed
    bool rests_ = false;           ///< all is done until the file changes
    State now_;

    std::mutex mutex_;  ///< of all above
    std::condition_variable turn_;
    std::atomic<int> waiting_ = 0;  ///< those who want the recording
    std::atomic<bool> ending_ = false;
    std::atomic<bool> stopped_ = false;

    std::mutex stateMutex_;
    State state_;  ///< what `now_` was when it was published
    bool told_ = false;
    std::chrono::steady_clock::time_point toldAt_;

    std::thread thread_;
};

}  // namespace viewer

#endif
