#pragma once

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace velmora::server {

// The program as a child process with its output in a pipe; it is ended with the test. `environment` holds
// "NAME=value".
class ServerProgram {
public:
    explicit ServerProgram(std::vector<std::string> arguments, const std::vector<std::string> &environment = {})
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        arguments.insert(arguments.begin(), VELMORA_SERVER_PROGRAM);
        std::vector<char *> pointers;
        for (std::string &argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::setsid(); // without a terminal, wherever the test runs
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
            for (const std::string &variable : environment)
                ::putenv(const_cast<char *>(variable.c_str()));
            ::execv(pointers[0], pointers.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        m_output = ::fdopen(ends[0], "r");
    }
    ~ServerProgram()
    {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        m_reader = {}; // at the end of the output
        std::fclose(m_output);
    }
    ServerProgram(const ServerProgram &) = delete;
    ServerProgram &operator=(const ServerProgram &) = delete;

    // The next line of output; empty at its end.
    std::string line()
    {
        char *buffer = nullptr;
        size_t size = 0;
        const ssize_t length = ::getline(&buffer, &size, m_output);
        std::string text = length > 0 ? std::string(buffer, static_cast<size_t>(length - 1)) : std::string();
        std::free(buffer);
        return text;
    }
    // The port that the program prints; 0 when it ends without printing one.
    int port()
    {
        std::string text = line();
        while (!text.empty() && !text.starts_with("velmora-server listening on http"))
            text = line();
        return text.empty() ? 0 : std::stoi(text.substr(text.rfind(':') + 1));
    }
    // Nobody reads the output any more: it does not fill the pipe.
    void ignoreOutput()
    {
        m_reader = std::jthread([this] {
            while (std::fgetc(m_output) != EOF) {
            }
        });
    }
    pid_t processId() const { return m_pid; }
    void signal(int number) { ::kill(m_pid, number); }
    int exitCode()
    {
        int status = 0;
        ::waitpid(std::exchange(m_pid, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t m_pid = -1;
    FILE *m_output = nullptr;
    std::jthread m_reader; // reads m_output to its end
};

} // namespace velmora::server
