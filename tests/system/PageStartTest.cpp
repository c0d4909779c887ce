#include "tests/system/SystemTest.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace zm::test {

/** Where the page is, and who opens it. */
class PageStart : public SystemTest {
protected:
    static constexpr int UsualPort = 8480;

    /** Starts a bench with `words`; gives the line with which it is ready. */
    std::string ready(const Words& words) {
        Words all{"zmbench", "--runtime", folder, "--no-disc-service", "--launcher", "passive"};
        all.insert(all.end(), words.begin(), words.end());
        bench = std::make_unique<Process>(all, folder);
        return bench->line();
    }

    /** Binds the usual port; an invalid one if somebody else has it, which is as good. */
    static UniqueFd takeUsualPort() {
        UniqueFd fd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(UsualPort);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int one = 1;
        ::setsockopt(fd.get(), SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
        if (::bind(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(fd.get(), 1) != 0) {
            fd.reset();
        }
        return fd;
    }
};

TEST_F(PageStart, APortThatIsTakenIsReplacedUnlessItWasAskedFor) {
    const UniqueFd taken = takeUsualPort();
    const std::string line = ready({});
    EXPECT_THAT(line, MatchesRegex("ready http://127\\.0\\.0\\.1:[0-9]+/\\?token=[0-9a-f]+"));
    EXPECT_THAT(line, testing::Not(HasSubstr(":8480/")));
    endBench();
    EXPECT_EQ(ready({"--port", std::to_string(UsualPort)}), "");
    EXPECT_EQ(bench->wait(), 1);
    EXPECT_THAT(bench->err(), HasSubstr("8480"));
    bench.reset();
}

TEST_F(PageStart, WithoutAPortItIsTheUsualOne) {
    // Somebody else on this machine may have it just then.
    const bool found = eventually([this] {
        const bool usual = ready({}).find("http://127.0.0.1:8480/") != std::string::npos;
        endBench();
        return usual;
    });
    EXPECT_TRUE(found);
}

TEST_F(PageStart, OpenLeadsTheDesktopsBrowserToThePageAndKeepsTheTokenFromOthers) {
    const std::string opener = folder + "/bin";
    std::filesystem::create_directory(opener);
    std::ofstream(opener + "/xdg-open")
        << "#!/bin/sh\necho noise\nprintf '%s\\n' \"$*\" >" << folder << "/opened\n";
    ::chmod((opener + "/xdg-open").c_str(), 0755);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (opener + ":" + path).c_str(), 1);
    const std::string url = ready({"--port", "0", "--open"}).substr(std::string_view("ready ").size());
    std::string opened;
    EXPECT_TRUE(eventually([&] {
        std::ifstream stream(folder + "/opened");
        return std::getline(stream, opened) && !stream.eof();
    }));
    EXPECT_EQ(opened.find(url.substr(url.find("token=") + 6)), std::string::npos)
        << "everybody can read a command line";
    std::ifstream file(opened);
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(file), {}),
                HasSubstr("http-equiv=\"refresh\" content=\"0;url=" + url + "\""));
    EXPECT_EQ(std::filesystem::status(opened).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(bench->line(std::chrono::milliseconds(100)), "") << "standard output is the bench's own";
    endBench();
    ::setenv("PATH", folder.c_str(), 1);
    EXPECT_THAT(ready({"--port", "0", "--open"}), StartsWith("ready http://"))
        << "it runs without a browser as well";
    EXPECT_TRUE(
        eventually([this] { return bench->err().find("no browser could be opened") != std::string::npos; }));
    ::setenv("PATH", path.c_str(), 1);
}

} // namespace zm::test
