// lumadot-demo: the tool with a simulated controller beside it, for a look without the hardware.
// The controller keeps its memory in %LOCALAPPDATA%\lumadot-demo. Ends with the tool's exit code.

#include <windows.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr int Failed = 1;
constexpr const wchar_t* SimulatorFails =
    L"The simulated controller does not start. Install the tool anew.";

class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() { close(); }

    HANDLE get() const { return handle_; }
    void close() {
        if (handle_ != nullptr) {
            CloseHandle(std::exchange(handle_, nullptr));
        }
    }

private:
    HANDLE handle_ = nullptr;
};

std::filesystem::path ownFolder() {
    std::wstring name(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()))) ==
           name.size()) {
        name.resize(2 * name.size());
    }
    name.resize(length);
    return std::filesystem::path(name).parent_path();
}

/// Whatever is put into it ends with this program, however that ends.
Handle makeJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

/// Starts a program; its standard output goes to `output`, unless that is null. Null: it does not
/// start.
Handle start(const std::filesystem::path& program, const std::wstring& options, HANDLE output) {
    std::wstring line = L"\"" + program.native() + L"\"" + options;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (output != nullptr) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = output;
    }
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, output != nullptr, 0,
                       nullptr, nullptr, &startup, &process) == 0) {
        return {};
    }
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

/// The first line that comes; less when there is an end before.
std::string readLine(HANDLE from) {
    std::string line;
    char letter = 0;
    DWORD count = 0;
    while (ReadFile(from, &letter, 1, &count, nullptr) != 0 && count == 1 && letter != '\n') {
        line += letter;
    }
    return line;
}

/// Starts the simulated controller and returns where it listens; empty: it does not.
std::wstring startSimulator(const std::filesystem::path& folder, const Handle& job,
                            Handle& simulator, Handle& output) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (CreatePipe(&read, &write, &inherited, 0) == 0) {
        return {};
    }
    output = Handle(read);
    Handle input(write);
    SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    const std::wstring state =
        local != nullptr ? std::wstring(L" --state \"") + local + L"\\lumadot-demo\"" : L"";
    simulator = start(folder / "lumadot-simulator.exe", L" --port 0" + state, input.get());
    input.close();  // The end of what can be read is the end of the simulator.
    if (simulator.get() == nullptr) {
        return {};
    }
    AssignProcessToJobObject(job.get(), simulator.get());
    constexpr std::string_view Before = "port ";
    const std::string line = readLine(read);
    if (!line.starts_with(Before)) {
        return {};
    }
    const auto digits = line.substr(Before.size(), line.find('\r') - Before.size());
    return L"127.0.0.1:" + std::wstring(digits.begin(), digits.end());
}

int fail(const wchar_t* what) {
    MessageBoxW(nullptr, what, L"LUMADOT Demo", MB_ICONERROR);
    return Failed;
}

/// Until the tool is closed; returns its exit code.
int runTool(const std::filesystem::path& folder, const std::wstring& place) {
    SetEnvironmentVariableW(L"LUMADOT_SIM_CONNECT", place.c_str());
    // Beside the library that has libusb's name: a program takes the one in its own folder.
    const Handle tool = start(folder / "simulated_bus" / "lumadot-tool.exe", L"", nullptr);
    if (tool.get() == nullptr) {
        return fail(L"The tool does not start. Install it anew.");
    }
    WaitForSingleObject(tool.get(), INFINITE);
    DWORD code = Failed;
    GetExitCodeProcess(tool.get(), &code);
    return static_cast<int>(code);
}

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*before*/, LPSTR /*line*/, int /*show*/) {
    const std::filesystem::path folder = ownFolder();
    const Handle job = makeJob();
    Handle simulator;
    Handle output;
    const std::wstring place = startSimulator(folder, job, simulator, output);
    const int code = place.empty() ? fail(SimulatorFails) : runTool(folder, place);
    // Windows 7 puts a program into one job only, and that may be somebody else's.
    TerminateProcess(simulator.get(), 0);
    return code;
}
