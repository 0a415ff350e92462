#pragma once

#include <QTemporaryDir>

namespace randblatt {

/// Points HOME and the XDG folders to a temporary folder for as long as the object lives. To be made before
/// the application object.
class TestEnvironment
{
public:
    TestEnvironment();

    [[nodiscard]] QString path(const QString &relative) const { return m_folder.filePath(relative); }

private:
    QTemporaryDir m_folder;
};

} // namespace randblatt

/// The main function of a test program whose test class needs an application of type `Application`.
#define RANDBLATT_TEST_MAIN(TestClass, Application)                                                          \
    int main(int argc, char **argv)                                                                          \
    {                                                                                                        \
        const randblatt::TestEnvironment environment;                                                        \
        Application application(argc, argv);                                                                 \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
