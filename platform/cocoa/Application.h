// The application around a run with a window. One source file per system. Thread: main.
#pragma once

namespace corvane {

/// Loads the interface file, whose controller starts the run, and serves its events. Ends the process with
/// the run's status instead of returning; 1 when the interface file cannot be loaded.
int runApplication(int argc, const char** argv);

}  // namespace corvane
