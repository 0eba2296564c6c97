#include "PrivateBus.h"

#include <QFile>

namespace Fenwhirl {

namespace {

constexpr char configuration[] = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%folder</listen>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <%rule own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus(Names names) : addressBefore_(qgetenv("DBUS_SESSION_BUS_ADDRESS")) {
    QFile file(folder_.filePath(QStringLiteral("bus.conf")));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QByteArray(configuration)
                       .replace("%folder", folder_.path().toUtf8())
                       .replace("%rule", names == Names::free ? "allow" : "deny"));
    }
    file.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + file.fileName(), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
    if (!daemon_.waitForReadyRead()) {
        qFatal("no session bus");
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", daemon_.readLine().trimmed());
}

PrivateBus::~PrivateBus() {
    kill();
    qputenv("DBUS_SESSION_BUS_ADDRESS", addressBefore_);
}

void PrivateBus::kill() {
    daemon_.kill();
    daemon_.waitForFinished();
}

QDBusConnection PrivateBus::connect() {
    // Qt shares connections of the same name, so each one gets a name of its own.
    static int made = 0;
    return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                         QStringLiteral("test%1").arg(++made));
}

} // namespace Fenwhirl
