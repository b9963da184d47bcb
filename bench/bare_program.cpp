// What lumadotctl cannot do without, as a program on libusb alone: the baseline of control_bench.
//
//   bare_program mode NUMBER          selects an input mode
//   bare_program record FILE FRAMES   asks for frames of four planes, and appends a block for each

#include <libusb.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t TextBlock = 12 + 32 * 130 + 2;

libusb_device_handle* openController(libusb_context* context) {
    libusb_device** list = nullptr;
    libusb_device_handle* handle = nullptr;
    libusb_device_descriptor descriptor{};
    const auto count = libusb_get_device_list(context, &list);
    for (ssize_t i = 0; i < count && handle == nullptr; ++i) {
        libusb_get_device_descriptor(list[i], &descriptor);
        if (descriptor.idVendor == 0x0314 && descriptor.idProduct == 0xE457) {
            libusb_open(list[i], &handle);
        }
    }
    libusb_free_device_list(list, 1);
    std::array<unsigned char, 256> product{};
    if (handle == nullptr ||
        libusb_get_string_descriptor_ascii(handle, descriptor.iProduct, product.data(), 256) < 0 ||
        libusb_claim_interface(handle, 0) < 0) {
        std::exit(EXIT_FAILURE);
    }
    return handle;
}

void move(libusb_device_handle* handle, unsigned char endpoint, unsigned char* bytes, int length) {
    int moved = 0;
    if (libusb_bulk_transfer(handle, endpoint, bytes, length, &moved, 10000) < 0) {
        std::exit(EXIT_FAILURE);
    }
}

void sendCommand(libusb_device_handle* handle, unsigned char code, unsigned char operand) {
    std::array<unsigned char, 2052> frame = {0x81, 0xC3, 0xE7, 0xFF, code, operand};
    move(handle, 0x01, frame.data(), 2052);
}

void record(libusb_device_handle* handle, const char* path, int frames) {
    std::array<unsigned char, 63> settings{};
    sendCommand(handle, 0x10, 0);
    move(handle, 0x81, settings.data(), 63);
    sendCommand(handle, 0x02, 2);
    std::array<unsigned char, 64> request = {0x02, 0xC3, 0xE8, 4};
    std::array<unsigned char, 4 * 512 + 5> reply{};
    const std::string block(TextBlock, '0');
    for (int i = 0; i < frames; ++i) {
        move(handle, 0x01, request.data(), 64);
        move(handle, 0x81, reply.data(), static_cast<int>(reply.size()));
        std::FILE* const file = std::fopen(path, "ab");
        std::fwrite(block.data(), 1, block.size(), file);
        std::fclose(file);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        return EXIT_FAILURE;
    }
    libusb_context* context = nullptr;
    libusb_init(&context);
    libusb_device_handle* const handle = openController(context);
    if (std::string_view(argv[1]) == "mode") {
        sendCommand(handle, 0x02, static_cast<unsigned char>(std::atoi(argv[2])));
    } else if (argc > 3) {
        record(handle, argv[2], std::atoi(argv[3]));
    }
    libusb_release_interface(handle, 0);
    libusb_close(handle);
    libusb_exit(context);
}
