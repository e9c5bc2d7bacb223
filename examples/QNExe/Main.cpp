// The program QNExe: runs a test suite, shows its log on standard error and ends with its verdict.
#include <cstdio>
#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ExitCode.h"
#include "examples/QNExe/Host.h"
#include "examples/QNExe/OperatorWindow.h"
#include "examples/QNExe/settings/RunSettings.h"

namespace {

ExitCode Answer(CommandLineReply const & reply) {
    std::fputs(reply.text.c_str(), reply.isError ? stderr : stdout);
    return reply.isError ? ExitCode::CouldNotRun : ExitCode::Passed;
}

ExitCode Run(HostOptions const & options) {
    try {
        if (options.showSettings) return Answer({SettingsText(options), false});
        if (options.window) return ServeOperator(options);
        return Host(options).Run();
    } catch (std::exception const & failure) {
        std::fprintf(stderr, "QNExe: %s\n", failure.what());
        return ExitCode::CouldNotRun;
    }
}

} // namespace

int main(int count, char ** arguments) {
    std::vector<std::string> given(arguments + (count > 0 ? 1 : 0), arguments + count);
    if (given.empty() && IsStartedFromDesktop()) given.push_back("--window");
    auto const read = ReadCommandLine(given);
    auto const * const options = std::get_if<HostOptions>(&read);
    auto const code = options != nullptr ? Run(*options) : Answer(std::get<CommandLineReply>(read));
    return static_cast<int>(code);
}
