// What a child process needs of neither system.
#include "platform/ChildProcess.h"

#include <fstream>
#include <iterator>
#include <thread>

namespace {

constexpr std::chrono::milliseconds Pause{2};

std::string Contents(std::filesystem::path const & file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

std::string ChildProcess::Output() const { return Contents(m_OutputFile); }
std::string ChildProcess::Error() const { return Contents(m_ErrorFile); }

bool ChildProcess::IsRunning() {
    Poll();
    return !m_End;
}

bool ChildProcess::WaitForOutput(std::size_t bytes, std::chrono::milliseconds patience) {
    auto const deadline = std::chrono::steady_clock::now() + patience;
    while (Output().size() < bytes) {
        if (!IsRunning() || std::chrono::steady_clock::now() > deadline)
            return Output().size() >= bytes;
        std::this_thread::sleep_for(Pause);
    }
    return true;
}

std::optional<ChildProcess::End> ChildProcess::Wait(std::chrono::milliseconds patience) {
    auto const deadline = std::chrono::steady_clock::now() + patience;
    while (IsRunning() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(Pause);
    return m_End;
}
