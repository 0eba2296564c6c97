#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"
#include "Fenwhirl/Processes/ApplicationFinder.h"
#include "Fenwhirl/Processes/ApplicationLookup.h"
#include "Fenwhirl/Processes/ControlGroup.h"

#include <QFile>
#include <QStringList>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

constexpr qint64 maxProcessFileSize = qint64{64} * 1024;

QString ofProcess(qint32 pid, const char* file) {
    return QStringLiteral("/proc/%1/%2").arg(QString::number(pid), QLatin1String(file));
}

QByteArray textOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(maxProcessFileSize) : QByteArray();
}

QStringList argumentsOf(qint32 pid) {
    QStringList words;
    for (const QByteArray& word : textOf(ofProcess(pid, "cmdline")).split('\0')) {
        words.append(QString::fromUtf8(word));
    }
    while (!words.isEmpty() && words.last().isEmpty()) {
        words.removeLast();
    }
    return words;
}

std::optional<QString> flatpakOf(qint32 pid) {
    bool isInside = false;
    for (const QByteArray& line : textOf(ofProcess(pid, "root/.flatpak-info")).split('\n')) {
        if (line.startsWith('[')) {
            isInside = line.trimmed() == "[Application]";
        } else if (isInside && line.startsWith("name=")) {
            return QString::fromUtf8(line.sliced(5).trimmed());
        }
    }
    return std::nullopt;
}

std::optional<ProcessOrigin> readOrigin(qint32 pid) {
    const FileDescriptor file(open(ofProcess(pid, "cgroup").toLatin1().constData(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    // The files of a process in /proc belong to the user who owns the process.
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || status.st_uid != geteuid()) {
        return std::nullopt;
    }
    std::array<char, 4096> text = {};
    const ssize_t length = read(file.number(), text.data(), text.size());
    return ProcessOrigin{
        .controlGroup =
            length > 0 ? controlGroupIn(QByteArray(text.data(), static_cast<qsizetype>(length))) : QString(),
        .arguments = [pid] { return argumentsOf(pid); },
        .workingFolder = [pid] { return QFile::symLinkTarget(ofProcess(pid, "cwd")); },
        .flatpak = [pid] { return flatpakOf(pid); }};
}

// The locales as desktop entries name them, most preferred first.
QStringList localesOf(AppLanguage language) {
    switch (language) {
    case AppLanguage::srCyrl:
        return {QStringLiteral("sr")};
    case AppLanguage::srLatn:
        return {QStringLiteral("sr@latin"), QStringLiteral("sr@Latn"), QStringLiteral("sr")};
    case AppLanguage::en:
        return {QStringLiteral("en"), QStringLiteral("en_US")};
    case AppLanguage::pt:
        return {QStringLiteral("pt"), QStringLiteral("pt_PT"), QStringLiteral("pt_BR")};
    case AppLanguage::automatic:
    case AppLanguage::fr:
    case AppLanguage::de:
    case AppLanguage::es:
    case AppLanguage::it:
    case AppLanguage::ru:
        break;
    }
    const std::string_view code = rawValue(language);
    return {QString::fromLatin1(code.data(), static_cast<qsizetype>(code.size()))};
}

class ApplicationLookupLinux final : public ApplicationLookup {
public:
    FoldContext::ApplicationOf forListing(const ProcessTable& table) override {
        finder_.beginSample(localesOf(Localizer::resolved()));
        return [this, &table](qint32 pid, QStringView path) {
            return finder_.applicationOf(pid, table.startWhenListed(pid), path);
        };
    }

private:
    ApplicationFinder finder_{DesktopEntries::ofThisComputer(), readOrigin};
};

} // namespace

std::unique_ptr<ApplicationLookup> ApplicationLookup::create() {
    return std::make_unique<ApplicationLookupLinux>();
}

} // namespace Fenwhirl
