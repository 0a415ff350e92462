#pragma once

namespace randblatt {

/// Chooses the platform that Qt is to run on, unless the environment does; to live while the application
/// object is made. Programs that are started later choose for themselves.
class PlatformChoice
{
public:
    PlatformChoice();
    ~PlatformChoice();
    PlatformChoice(const PlatformChoice &) = delete;
    PlatformChoice &operator=(const PlatformChoice &) = delete;

private:
    void choose(const char *platform);

    bool m_isMade = false;
};

} // namespace randblatt
