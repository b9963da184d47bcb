#include "platform/native_file.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#endif
#include <system_error>

namespace native_file {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

/// In characters. Windows takes 259. A folder's name leaves room for a recording's, which has 31, a
/// file's for that of a temporary file beside it, which is up to 24 longer.
constexpr std::size_t Limit = 220;

/// Of a share, of a device, or written in the special way: `std::filesystem` takes such names apart
/// in a wrong way, and loses one of the backslashes.
bool isSpecial(const std::wstring& name) {
    return name.starts_with(LR"(\\)") || name.starts_with(L"//");
}

/// With drive or share, and backslashes. Empty: it is no name.
std::wstring whole(const std::wstring& name) {
    std::wstring text(GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
    text.resize(
        GetFullPathNameW(name.c_str(), static_cast<DWORD>(text.size()), text.data(), nullptr));
    return text;
}

/// Written so, a name is taken as it is: without a limit, and "/" parts nothing.
bool isTakenAsItIs(const std::wstring& name) { return name.starts_with(LR"(\\?\)"); }

std::wstring withoutLimit(std::wstring name) {
    if (isTakenAsItIs(name)) {
        std::ranges::replace(name, L'/', L'\\');
        return name;
    }
    const std::wstring all = whole(name);
    if (all.size() <= Limit) {
        return name;
    }
    if (isTakenAsItIs(all) || all.starts_with(LR"(\\.\)")) {
        return all;
    }
    return isSpecial(all) ? LR"(\\?\UNC)" + all.substr(1) : LR"(\\?\)" + all;
}

/// The C library here does not know "x".
std::FILE* createAnew(const fs::path& path, const std::wstring& mode) {
    const int file =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    if (file < 0) {
        return nullptr;
    }
    std::FILE* const stream = _wfdopen(file, mode.c_str());
    if (stream == nullptr) {
        _close(file);
    }
    return stream;
}

}  // namespace

fs::path reachable(const fs::path& path) { return withoutLimit(path.native()); }

fs::path named(const char* path) {
    try {
        return withoutLimit(fs::path(std::u8string(path, path + std::strlen(path))).native());
    } catch (const std::exception&) {
        return {};  // Not UTF-8.
    }
}

std::string utf8(const fs::path& path) {
    const auto convert = [&path](char* to, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, to, room, nullptr, nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    bytes.pop_back();  // The zero at its end.
    return bytes;
}

fs::path target(const fs::path& path) {
    const fs::path name = reachable(path);
    std::error_code ignored;
    const fs::path found = isSpecial(name.native()) ? name : fs::weakly_canonical(name, ignored);
    return found.empty() ? name : reachable(found);
}

/// A file that is read-only is not replaced here, and a new one that is could not be removed.
void replace(const fs::path& file, const fs::path& fresh, std::error_code& error) {
    const DWORD before = GetFileAttributesW(file.c_str());
    const bool isReadOnly =
        before != INVALID_FILE_ATTRIBUTES && (before & FILE_ATTRIBUTE_READONLY) != 0;
    if (isReadOnly) {
        SetFileAttributesW(file.c_str(), before & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
    fs::rename(fresh, file, error);
    if (isReadOnly) {
        SetFileAttributesW(file.c_str(), before);  // Of the new one, or of the old one again.
    }
}

std::FILE* open(const char* path, const char* mode) {
    std::wstring wide(mode, mode + std::strlen(mode));
    if (const auto at = wide.find(L'x'); at != std::wstring::npos) {
        return createAnew(named(path), wide.erase(at, 1));
    }
    return _wfopen(named(path).c_str(), wide.c_str());
}

/// By opening it: given a name, the C library knows neither devices nor the special way of writing.
fs::file_type kindOf(const char* path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(open(path, "rb"), std::fclose);
    struct _stat64 status = {};
    if (!stream || _fstat64(_fileno(stream.get()), &status) != 0) {
        return fs::file_type::none;
    }
    switch (status.st_mode & _S_IFMT) {
        case _S_IFIFO:
            return fs::file_type::fifo;
        case _S_IFCHR:
            return fs::file_type::character;
        default:
            return fs::file_type::regular;
    }
}

/// `std::ftell` counts with 32 bits here.
std::int64_t seekEnd(std::FILE* stream) {
    return _fseeki64(stream, 0, SEEK_END) == 0 ? _ftelli64(stream) : -1;
}

#else

fs::path named(const char* path) { return path; }

fs::path reachable(const fs::path& path) { return path; }

std::string utf8(const fs::path& path) { return path; }

fs::path target(const fs::path& path) {
    std::error_code ignored;
    fs::path found = fs::weakly_canonical(path, ignored);
    return found.empty() ? path : found;
}

void replace(const fs::path& file, const fs::path& fresh, std::error_code& error) {
    if (const fs::file_status before = fs::status(file, error); fs::is_regular_file(before)) {
        fs::permissions(fresh, before.permissions(), error);
    }
    fs::rename(fresh, file, error);
}

std::FILE* open(const char* path, const char* mode) { return std::fopen(path, mode); }

fs::file_type kindOf(const char* path) {
    std::error_code ignored;
    return fs::status(path, ignored).type();
}

std::int64_t seekEnd(std::FILE* stream) {
    return std::fseek(stream, 0, SEEK_END) == 0 ? std::ftell(stream) : -1;
}

#endif

}  // namespace native_file
