#ifndef LUMADOT_TESTS_DEVICE_PAGES_SECTIONS_H
#define LUMADOT_TESTS_DEVICE_PAGES_SECTIONS_H

#include <vector>

#include "tests/device/pages/page.h"

namespace pages {

/// Something that a page says, and how it reads when it is written by the code's own figures.
struct Section {
    const char* name;
    void (*read)(Page&);
};

// docs/protocol.md
const std::vector<Section>& sentSections();
const std::vector<Section>& answerSections();
// docs/file-formats.md
const std::vector<Section>& fileSections();

}  // namespace pages

#endif
