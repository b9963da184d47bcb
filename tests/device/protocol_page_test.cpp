// The examples of docs/protocol.md: what they show is what the tool sends and understands.

#include <wx/msgdlg.h>

#include <fstream>
#include <functional>
#include <map>

#include "tests/support/device_link.h"
#include "tests/support/page_examples.h"
#include "tests/support/temporary_folder.h"
#include "ui/palette.h"

namespace {

const std::filesystem::path Page = LUMADOT_DOCS "/protocol.md";

using support::byteText;

class ProtocolPage : public support::DeviceLink {
protected:
    ProtocolPage() { bus.plugController(); }

    /// The packets that the controller gets while this runs.
    std::vector<simulator::Packet> sentBy(const std::function<void()>& run) {
        bus.clearCalls();
        run();
        std::vector<simulator::Packet> sent;
        for (const simulator::Call& call : bus.calls()) {
            if (call.function == "libusb_bulk_transfer" && call.endpoint == 0x01) {
                sent.push_back(call.data);
            }
        }
        return sent;
    }

    void expectExample(const std::string& name, const std::function<void()>& run) {
        const auto sent = sentBy(run);
        ASSERT_FALSE(sent.empty());
        EXPECT_EQ(byteText(sent.front()), byteText(support::pageExample(Page, name))) << name;
        ++examples_;
    }

    int examples_ = 0;
};

TEST_F(ProtocolPage, ShowsEveryCommandAsItIsSent) {
    expectExample("store", [] { usb.sendConfigCmd(0x01, 0); });
    expectExample("select-mode", [] { usb.sendConfigCmd(0x02, 2); });
    expectExample("select-preset", [] { usb.sendConfigCmd(0x03, 8); });
    expectExample("load-palette", [] { usb.sendPal(palette.data()); });
    expectExample("brightness", [] { usb.setBrightness(200); });
    expectExample("read-settings", [] { usb.getSettings(config, versionString); });
    expectExample("read-unique-id", [] { usb.getUniqueId(UIDString); });
    expectExample("store-palette", [] { usb.sendConfigCmd(0x12, 0); });
    expectExample("write-settings", [] { usb.sendConfig(config); });
    expectExample("reset", [] { usb.sendConfigCmd(0x00, 0); });  // Last: it takes a second.
    // Seven more are shown below: three of an upload, one of a dump, three of replies.
    EXPECT_EQ(support::pageExamples(Page).size(), static_cast<std::size_t>(examples_) + 7);
}

TEST_F(ProtocolPage, ShowsAnUploadAsItIsSent) {
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "hi.txt";
    std::ofstream(path) << "Hi!";
    dialogs.expectMessage("File Upload Successful !", wxMessageBoxCaptionStr);
    const auto sent = sentBy([&] { usb.uploadFile(path.string().c_str(), "hi.txt"); });
    ASSERT_EQ(sent.size(), 3U);
    EXPECT_EQ(byteText(sent[0]), byteText(support::pageExample(Page, "upload-open")));
    EXPECT_EQ(byteText(sent[1]), byteText(support::pageExample(Page, "upload-data")));
    EXPECT_EQ(byteText(sent[2]), byteText(support::pageExample(Page, "upload-close")));
}

TEST_F(ProtocolPage, ShowsADumpRequestAsItIsSent) {
    const support::TemporaryFolder folder;
    dump_running = false;  // One round.
    const auto sent = sentBy([&] { usb.receiveDump(2, folder.path().string()); });
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(byteText(sent[0]), byteText(support::pageExample(Page, "dump-request")));
}

TEST_F(ProtocolPage, ShowsANewerSettingsReplyAsItIsUnderstood) {
    answer(support::pageExample(Page, "settings-reply"));
    config = usb.getSettings(config, versionString);
    EXPECT_STREQ(versionString, "V3.17b");
    EXPECT_EQ(byteText(support::bytesOf(config)),
              "09 07 0F 0A 0F 0C 0F 00 0F 0F 11 12 13 14 15 16 17 18 19 00 01 00 63");
}

TEST_F(ProtocolPage, ShowsAnOlderSettingsReplyAsItIsUnderstood) {
    answer(support::pageExample(Page, "older-settings-reply"));
    config = usb.getSettings(config, versionString);
    EXPECT_EQ(byteText(support::bytesOf(config)), "09 07 0F 0A 0F 0C 0F 00 0F 0F 00*10 01 00 63");
}

TEST_F(ProtocolPage, ShowsAUniqueIdReplyAsItIsUnderstood) {
    answer(support::pageExample(Page, "unique-id-reply"));
    usb.getUniqueId(UIDString);
    EXPECT_STREQ(UIDString, "3A7F00C2");
}

}  // namespace
