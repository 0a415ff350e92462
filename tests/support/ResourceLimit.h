#pragma once

#include <csignal>

#include <sys/resource.h>

namespace randblatt {

/// Lets this process have less of what the system gives, as by RLIMIT_FSIZE or RLIMIT_NOFILE, for as long as
/// it lives. With no files left to open, some are open all the same.
class ResourceLimit
{
public:
    ResourceLimit(__rlimit_resource resource, rlim_t most)
        : m_resource(resource)
    {
        // A file that may not grow gives an error instead of ending the process.
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(m_resource, &m_before);
        const rlimit limit{.rlim_cur = most, .rlim_max = m_before.rlim_max};
        ::setrlimit(m_resource, &limit);
    }
    ~ResourceLimit() { ::setrlimit(m_resource, &m_before); }
    ResourceLimit(const ResourceLimit &) = delete;
    ResourceLimit &operator=(const ResourceLimit &) = delete;

private:
    __rlimit_resource m_resource;
    rlimit m_before{};
};

} // namespace randblatt
