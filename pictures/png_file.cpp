#include "pictures/png_file.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <string>

#include "recording/error.h"

namespace pictures {

/// The library's side. It leaves a function that fails by longjmp, so that the functions that call
/// it hold nothing that would have to be destroyed.
struct PngFile::Png {
    explicit Png(recording::OutputFile& file)
        : write(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, keepError, ignoreWarning)),
          info(write != nullptr ? png_create_info_struct(write) : nullptr) {
        if (info != nullptr) {
            png_set_write_fn(write, &file, put, nullptr);
        }
    }
    ~Png() { png_destroy_write_struct(&write, &info); }
    Png(const Png&) = delete;
    Png& operator=(const Png&) = delete;

    bool begin(png_uint_32 width, png_uint_32 height, const png_color* colours,
               int count) noexcept {
        if (info == nullptr || setjmp(png_jmpbuf(write)) != 0) {
            return false;
        }
        png_set_user_limits(write, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_IHDR(write, info, width, height, 8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_PLTE(write, info, colours, count);
        png_write_info(write, info);
        return true;
    }

    bool add(const std::uint8_t* pixels, std::size_t width, std::size_t rows) noexcept {
        if (setjmp(png_jmpbuf(write)) != 0) {
            return false;
        }
        for (std::size_t row = 0; row < rows; ++row) {
            png_write_row(write, pixels + row * width);
        }
        return true;
    }

    bool end() noexcept {
        if (setjmp(png_jmpbuf(write)) != 0) {
            return false;
        }
        png_write_end(write, nullptr);
        return true;
    }

    static void put(png_structp png, png_bytep bytes, png_size_t size) {
        auto* const file = static_cast<recording::OutputFile*>(png_get_io_ptr(png));
        if (!file->put({bytes, size})) {
            png_error(png, "the file cannot be written");
        }
    }
    [[noreturn]] static void keepError(png_structp png, png_const_charp text) {
        auto* const self = static_cast<Png*>(png_get_error_ptr(png));
        std::copy_n(text, std::min(std::char_traits<char>::length(text), self->error.size() - 1),
                    self->error.begin());
        png_longjmp(png, 1);
    }
    static void ignoreWarning(png_structp /*png*/, png_const_charp /*text*/) {}

    std::array<char, 100> error{};
    png_structp write;
    png_infop info;
};

PngFile::PngFile(recording::OutputFile& file, std::size_t width, std::size_t height,
                 const std::vector<display::Colour>& colours)
    : file_(file), width_(width), png_(std::make_unique<Png>(file)) {
    std::vector<png_color> palette;
    palette.reserve(colours.size());
    for (const display::Colour& colour : colours) {
        palette.push_back({colour[0], colour[1], colour[2]});
    }
    if (!png_->begin(static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                     palette.data(), static_cast<int>(palette.size()))) {
        fail();
    }
}

PngFile::~PngFile() = default;

void PngFile::add(std::span<const std::uint8_t> pixels) {
    if (!png_->add(pixels.data(), width_, pixels.size() / width_)) {
        fail();
    }
}

void PngFile::finish() {
    if (!png_->end()) {
        fail();
    }
}

/// What the file system says of a failure says more.
void PngFile::fail() const {
    file_.check();
    throw recording::Error(recording::Failure::CannotWrite,
                           "the PNG cannot be written: " + std::string(png_->error.data()));
}

}  // namespace pictures
