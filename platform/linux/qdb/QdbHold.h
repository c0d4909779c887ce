#pragma once

namespace zm {

/**
 * Lets a test stop a worker thread at a chosen row: the next statement that a marked thread runs has its
 * cells of row `rows` and above held back (qdb_cell waits) until `qdbRelease`. All calls from any thread.
 */
void qdbHold(int rows);
void qdbRelease();
/** Whether a thread waits at a held row at this moment. */
bool qdbHeld();
/** Marks the calling thread as a worker; others are never held. */
void qdbMarkWorker();

} // namespace zm
