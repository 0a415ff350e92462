#include "support/PrivateBus.h"

#include <QFile>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto configuration = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  %2
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_L1;

} // namespace

PrivateBus::PrivateBus(Services services)
{
    QFile file(m_folder.filePath(u"bus.conf"_s));
    if (file.open(QFile::WriteOnly))
        file.write(QString(configuration)
                       .arg(m_folder.path(), services == Services::installed
                                                 ? u"<standard_session_servicedirs/>"_s
                                                 : QString())
                       .toUtf8());
    file.close();
    m_daemon.start(u"dbus-daemon"_s, {"--config-file="_L1 + file.fileName(), u"--print-address"_s,
                                      u"--nofork"_s, u"--nopidfile"_s});
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead())
            qFatal("Der Bus startet nicht: %s", m_daemon.readAllStandardError().constData());
    }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    m_daemon.terminate();
    m_daemon.waitForFinished();
}

} // namespace randblatt
