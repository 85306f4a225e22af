// How bars and buttons look on a system whose own look has dated. Thread: main.
#pragma once

namespace corvane {

/// Before the interface file is loaded, after the application object is made.
void installTheme();

}  // namespace corvane
