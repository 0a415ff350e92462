#pragma once

#include <unistd.h>

namespace randblatt {

/// An open file of the operating system's, closed with this.
class FileDescriptor
{
public:
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    ~FileDescriptor() { close(); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    void close()
    {
        if (m_number >= 0)
            ::close(m_number);
        m_number = -1;
    }

private:
    int m_number;
};

} // namespace randblatt
