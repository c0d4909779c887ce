#include "services/disc/cover/CoverProgram.h"

#include "base/UniqueFd.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <optional>

extern char** environ;

namespace zm::disc::cover {

namespace {

using Clock = std::chrono::steady_clock;

// It limits the processor's time that it takes; this is for a machine that gives it none.
constexpr std::chrono::seconds Patience{30};
constexpr int LookMs = 50;
constexpr size_t HeaderBytes = 2 * sizeof(uint32_t);
constexpr size_t MostBytes = HeaderBytes + size_t{CoverSide} * CoverSide * 4;

Result<UniqueFd> inMemory(std::string_view bytes) {
    UniqueFd file(::memfd_create("picture", MFD_CLOEXEC));
    if (!file.valid()) {
        return systemError("memory for a picture");
    }
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return systemError("memory for a picture");
        }
        bytes.remove_prefix(static_cast<size_t>(std::max<ssize_t>(written, 0)));
    }
    ::lseek(file.get(), 0, SEEK_SET);
    return file;
}

/** The program while it runs. Ends it. */
class Run {
public:
    Status begin(const std::vector<std::string>& arguments, int input) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            return systemError("pipe");
        }
        m_output = UniqueFd(ends[0]);
        const UniqueFd theirs(ends[1]);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, theirs.get(), STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_t attributes;
        ::posix_spawnattr_init(&attributes);
        sigset_t none;
        ::sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
        std::error_code unknown;
        std::string program =
            std::filesystem::read_symlink("/proc/self/exe", unknown).replace_filename("zmcover").string();
        std::vector<char*> words{program.data()};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        errno = ::posix_spawn(&m_pid, program.c_str(), &actions, &attributes, words.data(), environ);
        const Status begun = errno == 0 ? ok() : systemError(program);
        ::posix_spawnattr_destroy(&attributes);
        ::posix_spawn_file_actions_destroy(&actions);
        m_pid = begun ? m_pid : 0;
        return begun;
    }

    ~Run() { static_cast<void>(end(SIGKILL)); }

    /** All that it writes, up to the most that it may. */
    Result<std::string> output(const Stop& stop) {
        std::string text;
        std::array<char, 65536> part;
        const auto deadline = Clock::now() + Patience;
        while (text.size() <= MostBytes) {
            pollfd look{m_output.get(), POLLIN, 0};
            const int readable = ::poll(&look, 1, LookMs);
            if (stop()) {
                return Error{"not wanted any more"};
            }
            if (Clock::now() >= deadline) {
                return Error{"takes too long"};
            }
            if (readable <= 0) {
                continue;
            }
            const ssize_t count = ::read(m_output.get(), part.data(), part.size());
            if (count == 0) {
                return text;
            }
            text.append(part.data(), static_cast<size_t>(std::max<ssize_t>(count, 0)));
        }
        return Error{"says too much"};
    }

    /** Waits for its end; nothing if it was a good one. */
    std::string end(int signal = 0) {
        if (m_pid == 0) {
            return "";
        }
        if (signal != 0) {
            ::kill(m_pid, signal);
        }
        int status = 0;
        while (::waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
        }
        m_pid = 0;
        if (WIFSIGNALED(status)) {
            return std::string("was ended by: ") + ::strsignal(WTERMSIG(status));
        }
        return WEXITSTATUS(status) == 0 ? "" : "cannot be decoded";
    }

private:
    pid_t m_pid = 0;
    UniqueFd m_output;
};

Result<Bitmap> bitmapOf(const std::string& output) {
    Bitmap bitmap;
    if (output.size() >= HeaderBytes) {
        std::memcpy(&bitmap.width, output.data(), sizeof bitmap.width);
        std::memcpy(&bitmap.height, output.data() + sizeof bitmap.width, sizeof bitmap.height);
    }
    const auto fits = [](uint32_t side) { return side >= 1 && side <= CoverSide; };
    if (!fits(bitmap.width) || !fits(bitmap.height) ||
        output.size() != HeaderBytes + size_t{bitmap.width} * bitmap.height * 4) {
        return Error{"no sense in the answer"};
    }
    bitmap.pixels.assign(output.begin() + HeaderBytes, output.end());
    return bitmap;
}

Result<Bitmap> ask(const std::vector<std::string>& arguments, std::string_view input, const Stop& stop) {
    const auto file = inMemory(input);
    if (!file) {
        return file.failure();
    }
    Run run;
    if (auto begun = run.begin(arguments, file->get()); !begun) {
        return begun.failure();
    }
    const auto output = run.output(stop);
    if (!output) {
        return output.failure();
    }
    if (const std::string fault = run.end(); !fault.empty()) {
        return Error{fault};
    }
    return bitmapOf(*output);
}

} // namespace

Result<Bitmap> decodePicture(std::string_view file, const Stop& stop) {
    return ask({"picture", std::to_string(CoverSide)}, file, stop);
}

Result<Bitmap> drawLetters(const std::string& letters, const std::string& color, const Stop& stop) {
    return ask({"letters", std::to_string(CoverSide), color, letters}, "", stop);
}

} // namespace zm::disc::cover
