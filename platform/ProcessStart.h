// What a process inherits from whoever starts it, set to what a run can rely on. Thread: main, before others.
#pragma once

namespace corvane {

/// First thing in the program. Afterwards the three standard descriptors are open, so that no file of ours
/// gets one of their numbers and is written over by the log; exit statuses of our tools are kept; a reader
/// who leaves, or a limit on the size of files, is an error of one write and not the end of a run; and new
/// files are for their owner only.
void prepareProcess();

}  // namespace corvane
