#ifndef LUMADOT_CONTROL_PROGRESS_H
#define LUMADOT_CONTROL_PROGRESS_H

#include <cstddef>
#include <string>

#include "control/clock.h"
#include "control/output.h"

namespace control {

/// "12.3 kB/s": bytes in a time that may be very short.
std::string rateText(std::size_t bytes, double seconds);

/// A bar with rate and time left, while somebody looks:
///
///     table.bin  [##########----------]  50 %  12.3 kB/s  0:07 left
class Progress {
public:
    enum class Unit { Bytes, Frames };

    /// `total` in units.
    Progress(Output& output, const std::string& name, std::size_t total, Unit unit = Unit::Bytes);
    ~Progress() { output_.progress(""); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Drawn anew ten times a second at most.
    void update(std::size_t done);

private:
    Output& output_;
    std::string name_;
    std::size_t total_;
    Unit unit_;
    TimePoint start_ = now();
    TimePoint drawn_ = {};
};

}  // namespace control

#endif
