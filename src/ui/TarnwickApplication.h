#pragma once

/// Builds the application, its first window and the one shared state, and runs the event loop.
int runTarnwick(int argc, char* argv[]);
