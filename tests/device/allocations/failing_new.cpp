#include "tests/device/allocations/failing_new.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

namespace {

enum class Asker { Tool, Toolkit, Bus };

/// Where the library begins that the code at this address belongs to.
void* libraryOf(void* code) {
    dl_find_object library{};
    return _dl_find_object(code, &library) == 0 ? library.dlfo_map_start : nullptr;
}

void* const Tool = libraryOf(reinterpret_cast<void*>(&libraryOf));
void* const SimulatedBus = libraryOf(reinterpret_cast<void*>(&libusb_close));
void* const Standard = libraryOf(reinterpret_cast<void*>(&std::terminate));

/// Templates and inline functions of the standard library and of the toolkit, as compiled into the
/// program: the libraries, too, use the program's. The program exports its names for this.
bool isShared(void* code) {
    Dl_info symbol{};
    if (dladdr(code, &symbol) == 0 || symbol.dli_sname == nullptr) {
        return false;
    }
    // The beginnings of mangled names: a qualified name, "const" or not, in std, in __gnu_cxx, or
    // of a class of the toolkit, whose length stands before it.
    std::string_view name = symbol.dli_sname;
    for (const std::string_view part : {"_Z", "N", "K"}) {
        name.remove_prefix(name.starts_with(part) ? part.size() : 0);
    }
    if (name.starts_with("St") || name.starts_with("Sa") || name.starts_with("9__gnu_cxx")) {
        return true;
    }
    name.remove_prefix(std::min(name.find_first_not_of("0123456789"), name.size()));
    return name.starts_with("wx");
}

bool isSomebody(void* code) {
    void* const library = libraryOf(code);
    return library != Standard && (library != Tool || !isShared(code));
}

/// Who wants the block, from the code that calls `operator new` outwards.
Asker askerBehind(void* caller) {
    std::array<void*, 64> frames{};
    const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
    void** const end = frames.data() + depth;
    void** const first = std::find(frames.data(), end, caller);
    if (std::ranges::find(first, end, SimulatedBus, libraryOf) != end) {
        return Asker::Bus;  // It calls nobody but the standard library.
    }
    void** const asker = std::find_if(first, end, isSomebody);
    return asker != end && libraryOf(*asker) == Tool ? Asker::Tool : Asker::Toolkit;
}

class Watch {
public:
    void start(int nth) {
        asked_ = {};
        blocks_ = {};
        nth_ = nth;
        running_ = true;
    }
    allocations::Asked end() {
        running_ = false;
        asked_.kept = static_cast<int>(
            std::ranges::count_if(blocks_, [](std::uintptr_t block) { return block != 0; }));
        return asked_;
    }
    bool isRunning() const { return running_; }
    void setRunning(bool running) { running_ = running; }

    /// The block, or null: there is no memory, or none for this one.
    void* take(std::size_t size, void* caller) {
        if (!running_) {
            return std::malloc(size);
        }
        running_ = false;  // What it takes to find the asker is not asked for by anyone.
        const Asker asker = askerBehind(caller);
        running_ = true;
        if (asker != Asker::Tool) {
            ++(asker == Asker::Bus ? asked_.bus : asked_.toolkit);
            return std::malloc(size);
        }
        if (++asked_.tool == nth_) {
            asked_.refused = true;
            return nullptr;
        }
        void* const block = std::malloc(size);
        replace(0, addressOf(block));
        return block;
    }
    void give(void* block) {
        if (block != nullptr) {
            replace(addressOf(block), 0);
        }
        std::free(block);
    }

private:
    /// Complemented: a leak checker must not take the table for the blocks' owner.
    static std::uintptr_t addressOf(void* block) {
        return ~reinterpret_cast<std::uintptr_t>(block);
    }
    void replace(std::uintptr_t from, std::uintptr_t to) {
        const auto found = std::ranges::find(blocks_, from);
        if (found != blocks_.end()) {
            *found = to;
        } else if (from == 0) {
            std::abort();  // More blocks at once than anything here takes.
        }
    }

    std::array<std::uintptr_t, 1024> blocks_{};
    allocations::Asked asked_;
    int nth_ = 0;
    bool running_ = false;
};

constinit Watch current;

void* takeOrThrow(std::size_t size, void* caller) {
    void* const block = current.take(std::max<std::size_t>(size, 1), caller);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

void* operator new(std::size_t size) { return takeOrThrow(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return takeOrThrow(size, __builtin_return_address(0)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return current.take(std::max<std::size_t>(size, 1), __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return current.take(std::max<std::size_t>(size, 1), __builtin_return_address(0));
}
void operator delete(void* block) noexcept { current.give(block); }
void operator delete[](void* block) noexcept { current.give(block); }
void operator delete(void* block, std::size_t) noexcept { current.give(block); }
void operator delete[](void* block, std::size_t) noexcept { current.give(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { current.give(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { current.give(block); }

namespace allocations {

void watch(int nth) { current.start(nth); }
Asked endWatch() { return current.end(); }

Unwatched::Unwatched() : before_(current.isRunning()) { current.setRunning(false); }
Unwatched::~Unwatched() { current.setRunning(before_); }

}  // namespace allocations
