// What the script prints for the controller, which reads it back from the output. They stand in the script's
// templates as they are printed; here is what is looked for. Constants, ASCII; any thread.
#pragma once

#include <string_view>

namespace corvane {

inline constexpr std::string_view kResultsText = "Results of the Corvane:";
inline constexpr std::string_view kWaitingText = "Waiting for ";
inline constexpr std::string_view kServerCopyText = "Moving Backup file to server volume";
inline constexpr std::string_view kRemovalText = "Removing old backup";
inline constexpr std::string_view kLaunchMailText = "----Launch Apple Mail----";
inline constexpr std::string_view kSuccessText = "Backup completed successfully";

}  // namespace corvane
