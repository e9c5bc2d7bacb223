// Whether a stream gets colours, by the conventions of command-line programs.
//
// Pure: the caller asks the environment and the stream.
#pragma once

#include <string>

enum class StreamKind { Terminal, File, Other };

// The variables as the environment holds them; a missing one is empty.
struct ColorEnvironment {
    std::string noColor{};       // NO_COLOR: any text switches colours off
    std::string cliColorForce{}; // CLICOLOR_FORCE: any text but "0" switches them on
    std::string cliColor{};      // CLICOLOR: "0" switches them off
    std::string term{};          // TERM: "dumb" has none
};

// NO_COLOR wins over CLICOLOR_FORCE, which wins over CLICOLOR. A file and a dumb terminal never
// get colours; a pipe only when they are forced.
inline bool WantsColor(ColorEnvironment const & environment, StreamKind stream) {
    if (!environment.noColor.empty()) return false;
    if (environment.term == "dumb" || stream == StreamKind::File) return false;
    if (!environment.cliColorForce.empty() && environment.cliColorForce != "0") return true;
    return environment.cliColor != "0" && stream == StreamKind::Terminal;
}
