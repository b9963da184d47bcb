#include "fuzz/window.h"

#include <unistd.h>
#include <wx/app.h>
#include <wx/filedlg.h>
#include <wx/init.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>

#include <clocale>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "simulator/bus.h"

/// The toolkit reads the chosen path from GTK's dialog, which holds none while it is not shown.
extern "C" char* gtk_file_chooser_get_filename(void* /*dialog*/) {
    return strdup(fuzz::inputFile().c_str());
}

namespace fuzz {

namespace {

wxString messages;

/// Answers every dialog: files with the input file, messages with OK.
class Answers : public wxModalDialogHook {
protected:
    int Enter(wxDialog* dialog) override {
        if (auto* const files = dynamic_cast<wxFileDialog*>(dialog)) {
            files->SetPath(inputFile());
        } else if (const auto* const box = dynamic_cast<wxMessageDialog*>(dialog)) {
            messages += box->GetMessage();
        }
        return wxID_OK;
    }
};

MainFrame& start() {
    int argc = 0;
    wxApp::SetInstance(new wxApp);
    wxEntryStart(argc, static_cast<char**>(nullptr));
    std::setlocale(LC_CTYPE, "");
    static Answers answers;
    answers.Register();
    simulator::Bus::instance().reset();
    simulator::Bus::instance().setLogging(false);
    return *new MainFrame(nullptr);  // Lives as long as the process.
}

}  // namespace

MainFrame& window() {
    static MainFrame& frame = start();
    return frame;
}

std::string inputFile() { return "/dev/shm/lumadot-fuzz-" + std::to_string(getpid()); }

void writeInputFile(const std::uint8_t* data, std::size_t size) {
    std::ofstream(inputFile(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void closeFile(const std::string& path) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        if (std::filesystem::read_symlink(entry, closedMeanwhile) == path) {
            close(std::stoi(entry.path().filename().string()));
        }
    }
}

wxString takeMessages() {
    wxString taken;
    taken.swap(messages);
    return taken;
}

}  // namespace fuzz
