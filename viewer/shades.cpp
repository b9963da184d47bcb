#include "viewer/shades.h"

#include "recording/raw_modes.h"

namespace viewer {

bool fits(const InputModeInfo& mode, const recording::Recording& recording) {
    if (mode.label.empty()) {
        return false;
    }
    return recording.kind() == recording::Kind::Text || !recording.xlTwin().empty() ||
           recording::canBeOf(mode, *recording.planes());
}

}  // namespace viewer
