#include "pictures/gif_file.h"

#include <array>
#include <bit>
#include <string>
#include <utility>

#include "recording/error.h"

namespace pictures {

namespace {

constexpr int ColourBits = 8;

/// The library's way of writing.
int put(GifFileType* gif, const GifByteType* bytes, int size) {
    auto* const file = static_cast<recording::OutputFile*>(gif->UserData);
    return file->put({bytes, static_cast<std::size_t>(size)}) ? size : 0;
}

recording::Error failure(int code) {
    const char* const text = GifErrorString(code);
    return {recording::Failure::CannotWrite, std::string("the GIF cannot be written: ") +
                                                 (text != nullptr ? text : "unknown error")};
}

struct MapCloser {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

/// The number of colours has to be a power of two; what is too much is black.
std::unique_ptr<ColorMapObject, MapCloser> mapOf(const std::vector<display::Colour>& colours) {
    std::array<GifColorType, 1U << ColourBits> table{};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        table[i] = {colours[i][0], colours[i][1], colours[i][2]};
    }
    const std::size_t count = std::bit_ceil(std::max<std::size_t>(colours.size(), 2));
    return std::unique_ptr<ColorMapObject, MapCloser>(
        GifMakeMapObject(static_cast<int>(count), table.data()));
}

}  // namespace

GifFile::GifFile(recording::OutputFile& file, std::size_t width, std::size_t height,
                 const std::vector<display::Colour>& colours)
    : file_(file) {
    int error = 0;
    const auto map = mapOf(colours);
    gif_ = EGifOpen(&file, put, &error);
    if (gif_ == nullptr || map == nullptr) {
        throw failure(error);
    }
    EGifSetGifVersion(gif_, true);
    check(EGifPutScreenDesc(gif_, static_cast<int>(width), static_cast<int>(height), ColourBits, 0,
                            map.get()));
    repeatForEver();
}

GifFile::~GifFile() {
    if (gif_ != nullptr) {
        EGifCloseFile(gif_, nullptr);
    }
}

/// The extension that all browsers know.
void GifFile::repeatForEver() {
    constexpr std::array<std::uint8_t, 3> NoEnd = {1, 0, 0};
    check(EGifPutExtensionLeader(gif_, APPLICATION_EXT_FUNC_CODE));
    check(EGifPutExtensionBlock(gif_, 11, "NETSCAPE2.0"));
    check(EGifPutExtensionBlock(gif_, NoEnd.size(), NoEnd.data()));
    check(EGifPutExtensionTrailer(gif_));
}

void GifFile::add(const Area& area, std::span<std::uint8_t> pixels, std::uint32_t delay) {
    const GraphicsControlBlock control{DISPOSE_DO_NOT, false, static_cast<int>(delay),
                                       NO_TRANSPARENT_COLOR};
    std::array<GifByteType, 4> packed{};
    EGifGCBToExtension(&control, packed.data());
    check(EGifPutExtension(gif_, GRAPHICS_EXT_FUNC_CODE, packed.size(), packed.data()));
    check(EGifPutImageDesc(gif_, static_cast<int>(area.left), static_cast<int>(area.top),
                           static_cast<int>(area.width), static_cast<int>(area.height), false,
                           nullptr));
    for (std::size_t row = 0; row < area.height; ++row) {
        check(EGifPutLine(gif_, &pixels[row * area.width], static_cast<int>(area.width)));
    }
}

void GifFile::finish() {
    int error = 0;
    if (EGifCloseFile(std::exchange(gif_, nullptr), &error) != GIF_OK) {
        file_.check();
        throw failure(error);
    }
    file_.check();
}

/// What the file system says of a failure says more.
void GifFile::check(int result) const {
    if (result != GIF_OK) {
        file_.check();
        throw failure(gif_->Error);
    }
}

}  // namespace pictures
