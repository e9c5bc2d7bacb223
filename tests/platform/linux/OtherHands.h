// Other hands on the registry: another process, and somebody with other rights.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

// A child that shares nothing with this process's connection; its answer is its exit code.
inline int InChild(std::function<int()> const & act) {
    pid_t const child = fork();
    if (child == 0) _exit(act());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The rights of somebody else for a scope, for a process that may do everything.
class AsSomebody {
public:
    AsSomebody() { EXPECT_EQ(seteuid(m_Own == 0 ? Nobody : m_Own), 0); }
    AsSomebody(AsSomebody const &) = delete;
    AsSomebody & operator=(AsSomebody const &) = delete;
    ~AsSomebody() { EXPECT_EQ(seteuid(m_Own), 0); }

private:
    static constexpr uid_t Nobody = 65534;
    uid_t const m_Own = geteuid();
};
