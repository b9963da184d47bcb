// A palette file of any content, loaded by the real window.

#include <algorithm>
#include <cstdint>

#include "fuzz/expect.h"
#include "fuzz/window.h"
#include "ui/palette.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MainFrame& window = fuzz::window();
    fuzz::writeInputFile(data, size);
    const auto before = palette;
    wxCommandEvent event;
    window.OnLoad_paletteMenuSelected(event);
    EXPECT(fuzz::takeMessages().empty());
    if (size >= 56 && data[0] == 1) {
        EXPECT(std::equal(palette.begin(), palette.end(), data + 8));
    } else {
        EXPECT(palette == before);
    }
    return 0;
}
