#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace zm::test {

/** A folder for one test, removed with all in it. */
class TemporaryFolder {
public:
    TemporaryFolder() {
        char pattern[] = "/tmp/zm-test-XXXXXX";
        if (!mkdtemp(pattern)) {
            throw std::runtime_error("no temporary folder");
        }
        m_path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code error; // what a test has removed itself is not there
        std::filesystem::remove_all(m_path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return m_path; }
    /** Writes a file in it; the file's path. */
    std::string write(const std::string& name, const std::string& content) const {
        const std::string path = m_path + "/" + name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

private:
    std::string m_path;
};

/** The same as the runtime folder of what runs in this process. */
class RuntimeFolder : public TemporaryFolder {
public:
    RuntimeFolder() {
        setenv("ZM_RUNTIME", path().c_str(), 1);
        unsetenv("ZM_CATALOGUE");
    }
};

} // namespace zm::test
