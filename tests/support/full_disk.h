#pragma once
// No file can be written to.

#include <csignal>
#include <sys/resource.h>

namespace seawarden_test
{

/// As long as it lives, every write to a file fails as on a full disk; making files doesn't.
class FullDisk
{
  public:
    FullDisk() : m_pHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_Limit);
        const rlimit none = {0, m_Limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
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
