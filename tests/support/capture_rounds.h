#ifndef LUMADOT_TESTS_SUPPORT_CAPTURE_ROUNDS_H
#define LUMADOT_TESTS_SUPPORT_CAPTURE_ROUNDS_H

#include <functional>
#include <map>

namespace support {

/// Takes part in the rounds of a capture, from its start on. A capture that a test forgets to end
/// fails it and is ended. The program has to be linked with `--wrap=libusb_bulk_transfer` and
/// `--wrap=libusb_get_device_list`, and there is one such object at a time.
class CaptureRounds {
public:
    using Action = std::function<void()>;

    CaptureRounds();
    ~CaptureRounds();
    CaptureRounds(const CaptureRounds&) = delete;
    CaptureRounds& operator=(const CaptureRounds&) = delete;

    /// Does this among the window events that are handled after the nth frame (1 = the first) has
    /// been asked for. Several actions for one frame all run in the same round.
    void after(int frame, Action action) { afterFrame_.emplace(frame, std::move(action)); }
    /// The same after the nth enumeration of the bus, the capture's own first one counted.
    void afterEnumeration(int nth, Action action) {
        afterEnumeration_.emplace(nth, std::move(action));
    }
    /// Does this at once, between a request and the reading of its reply, with the frame's number.
    void onRead(std::function<void(int)> action) { onRead_ = std::move(action); }
    /// Ends the capture after the nth frame.
    void stopAfter(int frame);

    int frames() const { return frames_; }  ///< frames asked for so far
    int enumerations() const { return enumerations_; }
    /// More frames than this are taken for a capture that cannot be stopped, as are more than 200
    /// enumerations in a row.
    void setLimit(int frames) { limit_ = frames; }

    // From the wrapped functions.
    void requestSent() { asked_ = true; }
    void reading();
    void enumerated();

private:
    using Plan = std::multimap<int, Action>;
    static void runLater(const Plan& plan, int number);
    static void watch(int number, int limit);

    Plan afterFrame_;
    Plan afterEnumeration_;
    std::function<void(int)> onRead_;
    bool asked_ = false;
    int frames_ = 0;
    int enumerations_ = 0;
    int enumerationsInARow_ = 0;
    int limit_ = 5000;
};

}  // namespace support

#endif
