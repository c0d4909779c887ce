#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace zm::test {

/** A folder for one test, removed with all in it. */
class TemporaryFolder {
public:
    TemporaryFolder() {
        char pattern[] = "/tmp/zm-test-XXXXXX";
        m_path = mkdtemp(pattern);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
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
