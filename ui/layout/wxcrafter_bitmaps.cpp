#include "ui/layout/wxcrafter_bitmaps.h"

#include <wx/filesys.h>
#include <wx/fs_mem.h>
#include <wx/log.h>
#include <wx/xrc/xmlres.h>

#include <memory>

// An aggregate of characters, so that the terminating zero is part of the document's size.
const unsigned char xml_res_file_0[] = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<resource xmlns=\"http://www.wxwidgets.org/wxxrc\">\n"
    " <!-- Handler Generation is ON -->\n"
    "</resource>\n"};

const std::uint64_t xml_res_size_0 = sizeof xml_res_file_0;

static_assert(sizeof xml_res_file_0 == 137);

namespace {

constexpr const char* Probe = "XRC_resource/dummy_file";
constexpr const char* Document = "XRC_resource/lumadot_window.xrc";

void installMemoryFileSystem() {
    wxMemoryFSHandler::AddFile(Probe, wxString("dummy one"));
    wxFileSystem files;
    const std::unique_ptr<wxFSFile> probe(files.OpenFile(wxString("memory:") + Probe));
    wxMemoryFSHandler::RemoveFile(Probe);
    if (!probe) {
        wxFileSystem::AddHandler(new wxMemoryFSHandlerBase);
    }
}

}  // namespace

void wxC9ED9InitBitmapResources() {
    installMemoryFileSystem();
    wxMemoryFSHandler::AddFileWithMimeType(Document, xml_res_file_0, xml_res_size_0, "text/xml");
    // The parser refuses the terminating zero; nobody shall see a message for that.
    const wxLogNull silence;
    wxXmlResource::Get()->Load(wxString("memory:") + Document);
}
