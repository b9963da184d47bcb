// A settings file of any content, loaded by the real window: 23 bytes are taken over, all else is
// refused and changes nothing.

#include <algorithm>
#include <array>
#include <cstdint>

#include "device/interfaceUSB.h"
#include "fuzz/expect.h"
#include "fuzz/window.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MainFrame& window = fuzz::window();
    fuzz::writeInputFile(data, size);
    const auto before = settings::bytesOf(config);
    wxCommandEvent event;
    window.OnLoad_configMenuSelected(event);
    const auto after = settings::bytesOf(config);
    if (size == 23) {
        EXPECT(fuzz::takeMessages().empty());
        EXPECT(std::equal(after.begin(), after.end(), data));
    } else {
        EXPECT(fuzz::takeMessages() == "File Error");
        EXPECT(after == before);
        fuzz::closeFile(fuzz::inputFile());
    }
    return 0;
}
