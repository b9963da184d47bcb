#include <png.h>

#include <array>
#include <string>

#include "pictures/picture.h"
#include "recording/error.h"
#include "recording/source.h"

namespace pictures {

namespace {

constexpr std::array<std::uint8_t, 8> Signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

recording::Error notAPicture(const std::string& name, const std::string& why) {
    return {recording::Failure::NotAPicture, name + " is no picture that can be shown: " + why};
}

/// The library's simple way of reading, which never leaves a function by longjmp.
class Reader {
public:
    Reader() { image_.version = PNG_IMAGE_VERSION; }
    ~Reader() { png_image_free(&image_); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool begin(std::span<const std::uint8_t> bytes) {
        return png_image_begin_read_from_memory(&image_, bytes.data(), bytes.size()) != 0;
    }
    bool finish(std::span<std::uint8_t> rgb) {
        image_.format = PNG_FORMAT_RGB;
        const png_color black{};
        return rgb.size() >= PNG_IMAGE_SIZE(image_) &&
               png_image_finish_read(&image_, &black, rgb.data(), 0, nullptr) != 0;
    }
    std::size_t width() const { return image_.width; }
    std::size_t height() const { return image_.height; }
    std::string error() const { return image_.message; }

private:
    png_image image_{};
};

}  // namespace

Picture readPng(const std::filesystem::path& path) {
    recording::FileSource file(path);
    const std::uint64_t size = file.size();
    if (size > MostPictureBytes) {
        throw notAPicture(recording::nameOf(path),
                          "it is larger than " + std::to_string(MostPictureBytes >> 20U) + " MiB");
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    bytes.resize(file.read(0, bytes));
    return decodePng(bytes, recording::nameOf(path));
}

Picture decodePng(std::span<const std::uint8_t> bytes, const std::string& name) {
    if (bytes.size() < Signature.size() ||
        !std::equal(Signature.begin(), Signature.end(), bytes.begin())) {
        throw notAPicture(name, "it is no PNG");
    }
    Reader reader;
    if (!reader.begin(bytes)) {
        throw notAPicture(name, reader.error());
    }
    Picture picture;
    picture.width = reader.width();
    picture.height = reader.height();
    if (std::uint64_t{picture.width} * picture.height > MostPicturePixels) {
        throw notAPicture(name, "it has " + std::to_string(picture.width) + " x " +
                                    std::to_string(picture.height) + " pixels, more than " +
                                    std::to_string(MostPicturePixels) + " in all");
    }
    picture.rgb.resize(3 * picture.width * picture.height);
    if (!reader.finish(picture.rgb)) {
        throw notAPicture(name, reader.error());
    }
    return picture;
}

}  // namespace pictures
