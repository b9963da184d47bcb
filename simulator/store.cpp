#include "simulator/store.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

namespace simulator {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

// In a file name, "%" and two hexadecimal digits stand for a byte. The other uses of "%" cannot be
// mistaken for that: "%" alone is the empty name, and these three prefixes go on with no digit.
constexpr std::string_view LongData = "%long-";
constexpr std::string_view LongName = "%name-";
constexpr std::string_view Unfinished = "%unfinished";
// Some systems take no more than 259 with all folders.
constexpr std::size_t LongestFileName = 100;

/// Letters that every system takes as they are. Not all of them tell "A" from "a".
bool isPlain(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return std::islower(byte) != 0 || std::isdigit(byte) != 0 || letter == '-' || letter == '_' ||
           letter == '.';
}

/// Whether Windows takes it for a device, whatever comes after the first dot.
bool isDevice(std::string_view name) {
    const std::string_view base = name.substr(0, name.find('.'));
    constexpr std::string_view Plain[] = {"con", "prn", "aux", "nul"};
    const bool numbered = base.size() == 4 &&
                          (base.starts_with("com") || base.starts_with("lpt")) &&
                          std::isdigit(static_cast<unsigned char>(base[3])) != 0;
    return numbered || std::ranges::find(Plain, base) != std::end(Plain);
}

std::string encode(const std::string& name) {
    if (name.empty()) {
        return "%";
    }
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char letter = name[i];
        const bool isOuterDot = letter == '.' && (i == 0 || i + 1 == name.size());
        if (isPlain(letter) && !isOuterDot && !(i == 0 && isDevice(name))) {
            text += letter;
        } else {
            char code[4];
            std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(letter));
            text += code;
        }
    }
    return text;
}

std::optional<std::string> decode(const std::string& text) {
    if (text == "%") {
        return "";
    }
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            name += text[i];
            continue;
        }
        unsigned code = 0;
        const char* digits = text.data() + i + 1;
        const char* end = text.data() + std::min(i + 3, text.size());
        if (std::from_chars(digits, end, code, 16).ptr != digits + 2) {
            return std::nullopt;
        }
        name += static_cast<char>(code);
        i += 2;
    }
    return name;
}

/// FNV-1a; long names only need to be told apart.
std::string hash(std::string_view text) {
    std::uint64_t value = 0xCBF29CE484222325;
    for (const char letter : text) {
        value = (value ^ static_cast<unsigned char>(letter)) * 0x100000001B3;
    }
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
    return digits;
}

std::optional<Bytes> readFile(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// Writes beside the file and renames, so that a process killed in between leaves the old contents.
void writeFile(const fs::path& path, std::span<const std::uint8_t> bytes) {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    const fs::path fresh = path.parent_path() / Unfinished;
    std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file) {
        fs::rename(fresh, path, error);
    }
}

/// The file's name, unless it is no text, as Windows allows.
std::optional<std::string> nameOf(const fs::path& path) {
    try {
        const std::u8string name = path.filename().u8string();
        return std::string(name.begin(), name.end());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

/// The name an upload had, from the name of its file.
std::optional<std::string> uploadName(const fs::path& path) {
    const std::optional<std::string> file = nameOf(path);
    if (!file || !file->starts_with(LongData)) {
        return file ? decode(*file) : std::nullopt;
    }
    const std::string key = file->substr(LongData.size());
    const std::optional<Bytes> name = readFile(path.parent_path() / (std::string(LongName) + key));
    if (!name) {
        return std::nullopt;
    }
    return std::string(name->begin(), name->end());
}

}  // namespace

void Store::load(const std::string& file, std::span<std::uint8_t> bytes) const {
    if (folder_.empty()) {
        return;
    }
    const std::optional<Bytes> kept = readFile(folder_ / file);
    if (kept && kept->size() == bytes.size()) {
        std::copy(kept->begin(), kept->end(), bytes.begin());
    }
}

void Store::save(const std::string& file, std::span<const std::uint8_t> bytes) const {
    if (!folder_.empty()) {
        writeFile(folder_ / file, bytes);
    }
}

std::map<std::string, Bytes> Store::uploads() const {
    std::map<std::string, Bytes> uploads;
    if (folder_.empty()) {
        return uploads;
    }
    std::error_code error;
    fs::directory_iterator entry(folder_ / "files", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::optional<std::string> name = uploadName(entry->path());
        std::optional<Bytes> bytes = name ? readFile(entry->path()) : std::nullopt;
        if (bytes) {
            uploads[*name] = std::move(*bytes);
        }
    }
    return uploads;
}

void Store::saveUpload(const std::string& name, std::span<const std::uint8_t> bytes) const {
    if (folder_.empty()) {
        return;
    }
    const fs::path files = folder_ / "files";
    const std::string encoded = encode(name);
    if (encoded.size() <= LongestFileName) {
        writeFile(files / encoded, bytes);
        return;
    }
    const std::string key = hash(name);
    const auto* letters = reinterpret_cast<const std::uint8_t*>(name.data());
    writeFile(files / (std::string(LongName) + key), {letters, name.size()});
    writeFile(files / (std::string(LongData) + key), bytes);
}

}  // namespace simulator
