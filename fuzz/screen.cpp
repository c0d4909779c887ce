// Messages of a client to the compositor, one a line. "@BYTES SEALS MESSAGE" sends a memory file of that size
// and with those seals along.
#include "base/JsonMessage.h"
#include "base/Socket.h"
#include "fuzz/formats/ScreenMessages.h"
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Scratch.h"
#include "services/bench/screen/Compositor.h"
#include "services/ctl/Numbers.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/mman.h>

using namespace zm;
using namespace zm::fuzz;

namespace {

constexpr int MostMessages = 32;
constexpr int LargestMemory = 1 << 22;

UniqueFd memory(std::string_view sizeText, std::string_view sealsText) {
    UniqueFd fd(memfd_create("zm-fuzz", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const int size = ctl::parseNumber<int>(sizeText).value_or(0);
    check(ftruncate(fd.get(), std::clamp(size, 0, LargestMemory)) == 0, "there is memory");
    fcntl(fd.get(), F_ADD_SEALS,
          ctl::parseNumber<int>(sealsText).value_or(0) & (F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL));
    return fd;
}

class Screen {
public:
    Screen() : m_compositor(m_loop, socket()) {
        check(static_cast<bool>(m_compositor.start()), "the compositor listens");
        m_compositor.setAppVisible(true);
        m_compositor.onDamage = [](Rect damage) {
            check(!damage.empty() && damage.x >= 0 && damage.y >= 0 &&
                      damage.x + damage.w <= ScreenSize().width && damage.y + damage.h <= ScreenSize().height,
                  "only the screen is damaged");
        };
    }

    void client(std::string_view text) {
        m_compositor.postChild("zmdisc_video_win");
        {
            SyncConnection client(connect());
            for (int count = 0; !text.empty() && count < MostMessages; ++count) {
                send(client, takePart(text, '\n'));
                readAnswers(client);
                m_compositor.compose();
            }
        }
        settle();
        check(!m_compositor.appConnected(), "a client that has gone is gone");
        m_compositor.withdrawChild("zmdisc_video_win");
        check(!m_compositor.videoState()["posted"], "a child that was withdrawn is gone");
        const Image& frame = m_compositor.compose();
        for (int y = 0; y < frame.height; y += 16) {
            for (int x = 0; x < frame.width; x += 16) {
                const uint8_t* pixel = frame.at(x, y);
                check((pixel[0] | pixel[1] | pixel[2]) == 0, "nothing of a client stays on the screen");
            }
        }
    }

private:
    static std::string socket() { return scratchFolder() + "/screen.sock"; }
    static UniqueFd connect() {
        auto fd = connectUnix(socket());
        check(static_cast<bool>(fd), "a client connects");
        return std::move(*fd);
    }
    void settle() {
        while (m_loop.iterate(false)) {
        }
    }
    void send(SyncConnection& client, std::string_view line) {
        // A client that was refused finds nobody who listens.
        if (line.starts_with('@')) {
            line.remove_prefix(1);
            const auto size = takePart(line, ' ');
            const auto fd = memory(size, takePart(line, ' '));
            static_cast<void>(client.send(line, {fd.get()}));
        } else {
            static_cast<void>(client.send(line));
        }
        settle();
    }
    static void readAnswers(SyncConnection& client) {
        while (const auto answer = client.receive(std::chrono::milliseconds(0))) {
            check(parseMessage(answer->text).is_object(), "an answer is a message");
        }
    }

    EventLoop m_loop;
    bench::screen::Compositor m_compositor;
};

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return screenMessages();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Screen screen;
    screen.client(asText(data, size));
    return 0;
}
