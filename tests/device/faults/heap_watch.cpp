#include "tests/device/faults/heap_watch.h"

#include <dlfcn.h>
#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <new>

namespace {

/// The blocks that were taken during the watch and are still in use. The addresses are kept
/// complemented: a leak checker must not take them for the owners.
class Watch {
public:
    void start() {
        entries_ = {};
        running_ = true;
    }
    void stop() { running_ = false; }
    bool isRunning() const { return running_; }

    void taken(void* block, std::size_t size) {
        Entry* const entry = find(0, block);
        if (entry == nullptr) {
            std::abort();  // More blocks than anything here takes.
        }
        *entry = {~addressOf(block), size};
    }
    void given(void* block) {
        if (Entry* const entry = find(~addressOf(block), block)) {
            entry->address = 0;
        }
    }

    std::vector<std::size_t> sizes() const {
        std::vector<std::size_t> sizes;
        for (const Entry& entry : entries_) {
            if (entry.address != 0) {
                sizes.push_back(entry.size);
            }
        }
        std::ranges::sort(sizes);
        return sizes;
    }

private:
    struct Entry {
        std::uintptr_t address;
        std::size_t size;
    };

    static std::uintptr_t addressOf(void* block) { return reinterpret_cast<std::uintptr_t>(block); }

    /// The entry that holds `wanted`, looked for near the block's own place in the table.
    Entry* find(std::uintptr_t wanted, void* block) {
        constexpr std::size_t Near = 256;
        const std::size_t first = addressOf(block) / 16 % (entries_.size() - Near);
        const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(first);
        const auto found = std::ranges::find(begin, begin + Near, wanted, &Entry::address);
        return found == begin + Near ? nullptr : &*found;
    }

    std::array<Entry, 1 << 14> entries_{};
    bool running_ = false;
};

constinit Watch watch;

/// Where the library begins that the code at this address belongs to.
void* libraryOf(void* code) {
    dl_find_object library{};
    return _dl_find_object(code, &library) == 0 ? library.dlfo_map_start : nullptr;
}

bool isOfTheBus(void* code) {
    return libraryOf(code) == libraryOf(reinterpret_cast<void*>(&libusb_close));
}

void* take(std::size_t size, void* caller) noexcept {
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (block != nullptr && watch.isRunning() && !isOfTheBus(caller)) {
        watch.taken(block, size);
    }
    return block;
}

void* takeOrThrow(std::size_t size, void* caller) {
    void* const block = take(size, caller);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void give(void* block) noexcept {
    if (block != nullptr && watch.isRunning()) {
        watch.given(block);
    }
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return takeOrThrow(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return takeOrThrow(size, __builtin_return_address(0)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return take(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return take(size, __builtin_return_address(0));
}
void operator delete(void* block) noexcept { give(block); }
void operator delete[](void* block) noexcept { give(block); }
void operator delete(void* block, std::size_t) noexcept { give(block); }
void operator delete[](void* block, std::size_t) noexcept { give(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { give(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { give(block); }

namespace faults {

namespace {

/// Files of the tests. The toolkit opens and closes its own as it goes: pipes, icons, settings.
int openFiles() {
    static const std::string tests = std::filesystem::temp_directory_path() / "lumadot-";
    static const std::string home = std::getenv("HOME");
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        const std::string target = std::filesystem::read_symlink(entry, closedMeanwhile);
        count += target.starts_with(tests) && !target.starts_with(home) ? 1 : 0;
    }
    return count;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Kept& kept) {
    stream << "blocks of";
    for (const std::size_t size : kept.blocks) {
        stream << " " << size;
    }
    return stream << ", " << kept.files << " open files";
}

Kept keptBy(const std::function<void()>& action) {
    const int filesBefore = openFiles();
    watch.start();
    action();
    watch.stop();
    return {watch.sizes(), openFiles() - filesBefore};
}

}  // namespace faults
