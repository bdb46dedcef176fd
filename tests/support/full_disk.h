#pragma once
// Files can't grow.

#include <csignal>
#include <sys/resource.h>

namespace seawarden_test
{

/// As long as it lives, every write beyond a file's first `bytes` bytes fails as on a full disk; making files
/// doesn't.
class FullDisk
{
  public:
    explicit FullDisk(rlim_t bytes = 0) : m_pHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_Limit);
        const rlimit few = {bytes, m_Limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &few);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_Limit);
        std::signal(SIGXFSZ, m_pHandler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    void (*m_pHandler)(int);
    rlimit m_Limit = {};
};

} // namespace seawarden_test
