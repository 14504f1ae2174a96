#pragma once
// Processes of a test's own: to write beside it, and to be killed.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vardelin::jet::test {

// A child process that runs `work` and ends with 0, or with 1 if it throws.
class Child
{
public:
    explicit Child(const std::function<void()> &work) : m_id(::fork())
    {
        if (m_id != 0)
            return;
        int result = 0;
        try {
            work();
        } catch (const std::exception &error) {
            std::fprintf(stderr, "child: %s\n", error.what());
            result = 1;
        }
        ::_exit(result);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child()
    {
        if (m_id > 0)
            kill();
    }
    void kill()
    {
        ::kill(m_id, SIGKILL);
        wait();
    }
    int wait()
    {
        int status = 0;
        ::waitpid(m_id, &status, 0);
        m_id = -1;
        return status;
    }

private:
    pid_t m_id;
};

// One way, one byte at a time.
class Pipe
{
public:
    Pipe() { EXPECT_EQ(::pipe(m_ends), 0); }
    ~Pipe()
    {
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;
    template <class Value>
    void send(Value value)
    {
        if (::write(m_ends[1], &value, sizeof value) != static_cast<ssize_t>(sizeof value))
            std::abort();
    }
    template <class Value>
    Value receive()
    {
        Value value{};
        EXPECT_EQ(::read(m_ends[0], &value, sizeof value), static_cast<ssize_t>(sizeof value));
        return value;
    }
    void closeWriting()
    {
        ::close(m_ends[1]);
        m_ends[1] = -1;
    }
    // Everything that is still in it; the last value, or `none`.
    template <class Value>
    Value last(Value none)
    {
        Value value{};
        while (::read(m_ends[0], &value, sizeof value) == static_cast<ssize_t>(sizeof value))
            none = value;
        return none;
    }

private:
    int m_ends[2] = {-1, -1};
};

// A number that a variable of the environment sets, for longer runs.
inline int countFrom(const char *variable, int otherwise)
{
    const char *wanted = std::getenv(variable);
    return wanted != nullptr ? std::atoi(wanted) : otherwise;
}

} // namespace vardelin::jet::test
