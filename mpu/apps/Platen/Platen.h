#pragma once

/** The whole program: 0 on an orderly end, 1 on any failure; ends the process itself after usage or version
 * output. */
int PlatenMain(int argc, char** argv);
