// The embedded resource: what it holds, and that it is registered once, whatever was there before.

#include <gmock/gmock.h>
#include <wx/filesys.h>
#include <wx/fs_mem.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>
#include <wx/xrc/xmlres.h>

#include <memory>
#include <string_view>

#include "tests/support/toolkit.h"
#include "ui/layout/wxcrafter.h"
#include "ui/layout/wxcrafter_bitmaps.h"

namespace {

using testing::IsEmpty;

/// 136 characters and the terminating zero.
constexpr std::string_view Document(
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<resource xmlns=\"http://www.wxwidgets.org/wxxrc\">\n"
    " <!-- Handler Generation is ON -->\n"
    "</resource>\n\0",
    137);

/// The toolkit's list of file system handlers, which it shows to nobody.
struct FileSystems : wxFileSystem {
    static std::vector<wxFileSystemHandler*> memoryHandlers() {
        std::vector<wxFileSystemHandler*> found;
        for (wxObject* handler : m_Handlers) {
            if (dynamic_cast<wxMemoryFSHandlerBase*>(handler) != nullptr) {
                found.push_back(static_cast<wxFileSystemHandler*>(handler));
            }
        }
        return found;
    }
};

/// The only memory file in the resource folder, as "memory:XRC_resource/..."; empty if none.
wxString registeredDocument() {
    wxFileSystem files;
    const wxString found = files.FindFirst("memory:XRC_resource/*", wxFILE);
    EXPECT_EQ(files.FindNext(), "") << "more than one memory file";
    return found;
}

/// As when the program starts: nothing registered, and no handler for memory files.
class EmbeddedResource : public testing::Test {
protected:
    EmbeddedResource() {
        if (const wxString document = registeredDocument(); !document.empty()) {
            wxXmlResource::Get()->Unload(document);
            wxMemoryFSHandler::RemoveFile(document.AfterFirst(':'));
        }
        for (wxFileSystemHandler* handler : FileSystems::memoryHandlers()) {
            delete wxFileSystem::RemoveHandler(handler);
        }
        bBitmapLoaded = false;
    }

    ~EmbeddedResource() override { EXPECT_THAT(log.messages(), IsEmpty()); }

    support::LogCollector log;
};

TEST_F(EmbeddedResource, IsAnEmptyDocumentOfFourLinesWithItsTerminatingZero) {
    EXPECT_EQ(xml_res_size_0, 137U);
    const auto* const bytes = reinterpret_cast<const char*>(xml_res_file_0);
    EXPECT_EQ(std::string_view(bytes, 137), Document);
}

TEST_F(EmbeddedResource, IsRegisteredWhenTheFirstWindowIsMade) {
    EXPECT_EQ(registeredDocument(), "");
    const MainFrameBaseClass first(nullptr);
    EXPECT_TRUE(bBitmapLoaded);
    EXPECT_TRUE(registeredDocument().StartsWith("memory:XRC_resource/"));
}

TEST_F(EmbeddedResource, IsRegisteredWholeAsXml) {
    wxC9ED9InitBitmapResources();
    wxFileSystem files;
    const std::unique_ptr<wxFSFile> file(files.OpenFile(registeredDocument()));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->GetMimeType(), "text/xml");
    char bytes[200];
    file->GetStream()->Read(bytes, sizeof bytes);
    EXPECT_EQ(std::string_view(bytes, file->GetStream()->LastRead()), Document);
}

TEST_F(EmbeddedResource, IsNotRegisteredAgainByASecondWindow) {
    const MainFrameBaseClass first(nullptr);
    wxMemoryFSHandler::RemoveFile(registeredDocument().AfterFirst(':'));
    const MainFrameBaseClass second(nullptr);
    EXPECT_EQ(registeredDocument(), "");
    EXPECT_TRUE(bBitmapLoaded);
}

TEST_F(EmbeddedResource, BringsAHandlerForMemoryFilesWhenThereIsNone) {
    ASSERT_THAT(FileSystems::memoryHandlers(), IsEmpty());
    wxC9ED9InitBitmapResources();
    EXPECT_EQ(FileSystems::memoryHandlers().size(), 1U);
}

TEST_F(EmbeddedResource, BringsNoSecondHandlerForMemoryFiles) {
    auto* const there = new wxMemoryFSHandler;
    wxFileSystem::AddHandler(there);
    wxC9ED9InitBitmapResources();
    EXPECT_THAT(FileSystems::memoryHandlers(), testing::ElementsAre(there));
}

TEST_F(EmbeddedResource, LeavesNoProbeFileBehind) {
    for (const bool handlerIsThere : {false, true}) {
        SCOPED_TRACE(handlerIsThere);
        ASSERT_EQ(FileSystems::memoryHandlers().size(), handlerIsThere ? 1U : 0U);
        wxC9ED9InitBitmapResources();
        wxFileSystem files;
        const std::unique_ptr<wxFSFile> probe(files.OpenFile("memory:XRC_resource/dummy_file"));
        EXPECT_EQ(probe, nullptr);
        wxMemoryFSHandler::RemoveFile(registeredDocument().AfterFirst(':'));
    }
}

TEST_F(EmbeddedResource, ComesWithAHandlerForBitmaps) {
    const MainFrameBaseClass first(nullptr);
    wxStringInputStream source(
        "<resource><object class=\"wxBitmap\" name=\"sample\" "
        "stock_id=\"wxART_ERROR\"/></resource>");
    auto* const document = new wxXmlDocument(source);
    ASSERT_TRUE(wxXmlResource::Get()->LoadDocument(document, "sample.xrc"));
    EXPECT_TRUE(wxXmlResource::Get()->LoadBitmap("sample").IsOk());
    wxXmlResource::Get()->Unload("sample.xrc");
}

}  // namespace
