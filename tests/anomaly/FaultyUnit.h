#pragma once

#include "base/JsonMessage.h"
#include "tests/anomaly/ApplicationRun.h"
#include "tests/support/Catalogue.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnitServer.h"

#include <memory>
#include <string>
#include <vector>

namespace zm::test {

/** What came of one run of the application through all that the user and the disc do. */
struct Outcome {
    int status = 0;          ///< exit status, or minus the signal that killed it
    bool endedInTime = true; ///< by itself, or when it was asked to
    ApplicationRun::Remains remains;
    std::vector<std::string> log; ///< what was logged meanwhile
    std::string errors;           ///< its standard error
    /** Steps of the story whose result could be seen. */
    std::vector<std::string> seen;
    /** Lines that the application published and that are not whole. */
    std::vector<std::string> broken;

    bool logged(const std::string& text) const;
    std::string text() const;
};

/** A head unit with a catalogue, under which the application is started again and again. */
class FaultyUnit {
public:
    FaultyUnit();

    /**
     * Start, resume, a disc with a catalogue, its play page, the list of its files opened and filled, a
     * folder, a file chosen, the disc ejected, the end. The `number`-th call of `kind` fails; 0: none.
     */
    Outcome run(FaultKind kind, int number);

private:
    bool act(ApplicationRun& application, const std::vector<std::string>& words);
    void story(ApplicationRun& application, Outcome& outcome);
    void note(Outcome& outcome, const std::string& step, bool seen);
    bool waitForPage(ApplicationRun& application);
    int window();
    Json list(int page);
    std::string firstRow(int page, size_t rows);
    void touchRow(ApplicationRun& application, int page, int row);
    std::vector<std::string> logLines();
    std::vector<std::string> brokenLines();

    Catalogue m_catalogue;
    RuntimeFolder m_folder;
    std::unique_ptr<UnitServer> m_server;
    bool m_settles = true; ///< in this run
    size_t m_commands = 0; ///< published before this run
};

} // namespace zm::test
