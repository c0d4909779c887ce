// Resource files that are edited while the system runs.

#include "BuildPaths.h"
#include "tests/system/SystemTest.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zm::test {

class SystemReload : public SystemTest {
protected:
    SystemReload() {
        pages = folder + "/pages";
        std::filesystem::copy(ZM_SOURCE_DIR "/resources", pages, std::filesystem::copy_options::recursive);
        startManual({"--resources", pages});
    }
    /** Replaces the first `from` in a file by `to`. */
    void edit(const std::string& name, const std::string& from, const std::string& to) {
        std::stringstream content;
        content << std::ifstream(pages + "/" + name).rdbuf();
        std::string text = content.str();
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        std::ofstream(pages + "/" + name) << text.replace(at, from.size(), to);
    }
    bool logged(const std::string& text) {
        return eventually([&] { return must({"log"}).find(text) != std::string::npos; });
    }
    std::string messageText() { return item(1, 7004)["text"]; }

    std::string pages;
};

TEST_F(SystemReload, AnEditedWordingIsOnTheScreenAtOnce) {
    putDevice({"disc::0"});
    const std::string before = messageText();
    edit("shared/texts.zmrc", "\"" + before + "\"", "\"Put a disc in\"");
    EXPECT_TRUE(eventually([&] { return messageText() == "Put a disc in"; })) << messageText();
    EXPECT_TRUE(logged("DISC.zmrc_device was read again"));
    EXPECT_TRUE(logged("OVERLAY.zmrc_device was read again"));
}

TEST_F(SystemReload, AFaultIsReportedAndTheOldPagesStayUntilItIsMended) {
    putDevice({"disc::0"});
    const std::string before = messageText();
    edit("DISC.zmrc_device", "\"windows\"", "\"windoze\"");
    EXPECT_TRUE(logged("DISC.zmrc_device:"));
    EXPECT_TRUE(logged("found the name \"windoze\", expected one of"));
    EXPECT_EQ(messageText(), before);
    edit("DISC.zmrc_device", "\"windoze\"", "\"windows\"");
    EXPECT_TRUE(logged("DISC.zmrc_device was read again"));
    EXPECT_EQ(messageText(), before);
}

} // namespace zm::test
