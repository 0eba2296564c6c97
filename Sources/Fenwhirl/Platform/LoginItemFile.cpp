#include "Fenwhirl/Platform/LoginItemFile.h"

#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Fenwhirl {

namespace {

bool hasControlCharacter(const QString& text) {
    return std::ranges::any_of(text,
                               [](QChar character) { return character < u' ' || character == u'\x7f'; });
}

// One argument of the entry's Exec line. It is quoted, with four characters escaped and percent signs
// doubled, because % begins a field code. Backslashes are then escaped once more, as in every string value of
// an entry.
QString execArgument(const QString& argument) {
    QString quoted;
    for (const QChar character : argument) {
        if (character == u'"' || character == u'`' || character == u'$' || character == u'\\') {
            quoted += u'\\';
        }
        quoted += character;
        if (character == u'%') {
            quoted += u'%';
        }
    }
    quoted.replace(u'\\', QStringLiteral("\\\\"));
    return u'"' + quoted + u'"';
}

} // namespace

QString launchAgentPath(const QString& home) {
    return home + QStringLiteral("/Library/LaunchAgents/com.fenwhirl.app.plist");
}

QString launchAgentProgram(const QString& bundlePath) {
    return bundlePath.endsWith(QStringLiteral(".app")) ? bundlePath
                                                       : QStringLiteral("/Applications/Fenwhirl.app");
}

bool isTranslocated(const QString& bundlePath) {
    return bundlePath.contains(QStringLiteral("/AppTranslocation/"));
}

std::optional<QByteArray> launchAgentPropertyList(const QString& programPath) {
    if (hasControlCharacter(programPath)) {
        return std::nullopt;
    }
    const QString text = QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>com.fenwhirl.app</string>
	<key>ProgramArguments</key>
	<array>
		<string>/usr/bin/open</string>
		<string>-a</string>
		<string>%1</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
</dict>
</plist>
)");
    return text.arg(programPath.toHtmlEscaped()).toUtf8();
}

std::optional<QByteArray> autostartEntry(const QString& executablePath) {
    if (hasControlCharacter(executablePath)) {
        return std::nullopt;
    }
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Fenwhirl\n"
                                        "Exec=%1\n"
                                        "Icon=com.fenwhirl.app\n"
                                        "Terminal=false\n"
                                        "StartupNotify=false\n");
    return text.arg(execArgument(executablePath)).toUtf8();
}

bool loginItemFileExists(const QString& path) {
    return QFileInfo::exists(path);
}

bool writeLoginItemFile(const QString& path, const std::optional<QByteArray>& contents) {
    return contents && QDir().mkpath(QFileInfo(path).path()) &&
           replaceFile(path.toStdString(), contents->toStdString());
}

bool removeLoginItemFile(const QString& path) {
    return !loginItemFileExists(path) || QFile::remove(path);
}

} // namespace Fenwhirl
