// The program QNExe: runs a test suite on the console and ends with its verdict.
#include <cstdio>
#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ExitCode.h"
#include "examples/QNExe/Host.h"
#include "examples/QNExe/settings/RunSettings.h"

namespace {

ExitCode Answer(CommandLineReply const & reply) {
    std::fputs(reply.text.c_str(), reply.isError ? stderr : stdout);
    return reply.isError ? ExitCode::CouldNotRun : ExitCode::Passed;
}

ExitCode Run(HostOptions const & options) {
    try {
        if (options.showSettings) return Answer({SettingsText(options), false});
        return Host(options).Run();
    } catch (std::exception const & failure) {
        std::fprintf(stderr, "QNExe: %s\n", failure.what());
        return ExitCode::CouldNotRun;
    }
}

} // namespace

int main(int count, char ** arguments) {
    std::vector<std::string> const given(arguments + (count > 0 ? 1 : 0), arguments + count);
    auto const read = ReadCommandLine(given);
    auto const * const options = std::get_if<HostOptions>(&read);
    auto const code = options != nullptr ? Run(*options) : Answer(std::get<CommandLineReply>(read));
    return static_cast<int>(code);
}
