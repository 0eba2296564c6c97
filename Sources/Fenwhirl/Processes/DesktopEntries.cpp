#include "Fenwhirl/Processes/DesktopEntries.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr qint64 maxEntrySize = qint64{256} * 1024;
constexpr qsizetype mostEntries = 5000;
constexpr int maxDepth = 4;

// Programs that start others: an entry whose command begins with one of these does not belong to it.
constexpr std::array launchers = {
    QStringView(u"flatpak"),     QStringView(u"snap"),        QStringView(u"pkexec"),
    QStringView(u"sudo"),        QStringView(u"gksu"),        QStringView(u"kdesu"),
    QStringView(u"dbus-launch"), QStringView(u"dbus-send"),   QStringView(u"gapplication"),
    QStringView(u"xdg-open"),    QStringView(u"gio"),         QStringView(u"gtk-launch"),
    QStringView(u"systemctl"),   QStringView(u"gamemoderun"), QStringView(u"nohup"),
    QStringView(u"xterm"),
};

// Folders that many programs share wherever the home is, matched by their paths.
bool isSharedBySystem(const QString& folder) {
    static const QRegularExpression pattern(QStringLiteral(
        "^(|/|/bin|/sbin|/lib\\w*|/opt|/home|/root|/tmp|/usr|/snap|/app|/nix/store|/usr/(local/)?"
        "(bin|sbin|games|lib\\w*|libexec|share|lib\\w*/\\w+-linux-gnu\\w*(/libexec(/kf\\d)?)?)|/usr/local|/"
        "var(/\\w+)?|/srv|/mnt(/[^/]+)?|(/run)?/media(/[^/]+){0,2}|.*/\\.local(/bin|/lib|/share)?)$"));
    return pattern.match(folder).hasMatch();
}

// Shared folders in which every installed program has a folder with the name of its command. Elsewhere a
// folder's name says nothing: what is in "~/code" or "/tmp/code" was not installed with the command "code".
bool holdsInstallations(const QString& folder) {
    static const QRegularExpression pattern(
        QStringLiteral("^(/opt|/snap|/lib\\w*|/usr(/.+)?|.*/\\.local/(lib|share))$"));
    return pattern.match(folder).hasMatch();
}

QString parentOf(const QString& path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 0));
}

QString fileNameOf(const QString& path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

QString unescapedValue(QStringView value) {
    QString text;
    text.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case u's':
            text += u' ';
            break;
        case u'n':
            text += u'\n';
            break;
        case u't':
            text += u'\t';
            break;
        case u'r':
            text += u'\r';
            break;
        case u'\\':
            text += u'\\';
            break;
        default:
            text += u'\\';
            text += value[i];
        }
    }
    return text;
}

bool isAssignment(const QString& word) {
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*="));
    return pattern.match(word).hasMatch();
}

// Turns "env NAME=VALUE… PROGRAM …" into "PROGRAM …".
QStringList withoutEnvironment(QStringList command) {
    if (command.isEmpty() || fileNameOf(command.first()) != QStringLiteral("env")) {
        return command;
    }
    command.removeFirst();
    while (!command.isEmpty() && (isAssignment(command.first()) || command.first().startsWith(u'-'))) {
        command.removeFirst();
    }
    return command;
}

// An interpreter's options that take the next word as their value.
struct OptionSyntax {
    QStringList withValue;
    QStringList beforeScript; // the next word is the script
};

OptionSyntax habitsOf(const QString& interpreter) {
    if (interpreter.startsWith(QStringLiteral("python")) || interpreter.startsWith(QStringLiteral("pypy"))) {
        return {{QStringLiteral("-W"), QStringLiteral("-X")}, {QStringLiteral("-m")}};
    }
    if (interpreter.startsWith(QStringLiteral("java"))) {
        return {{QStringLiteral("-cp"), QStringLiteral("-classpath"), QStringLiteral("--class-path"),
                 QStringLiteral("-p"), QStringLiteral("--module-path")},
                {QStringLiteral("-jar"), QStringLiteral("-m"), QStringLiteral("--module")}};
    }
    if (interpreter.startsWith(QStringLiteral("node")) ||
        interpreter.startsWith(QStringLiteral("electron"))) {
        return {{QStringLiteral("-r"), QStringLiteral("--require")}, {}};
    }
    if (interpreter.startsWith(QStringLiteral("ruby")) || interpreter.startsWith(QStringLiteral("gjs"))) {
        return {{QStringLiteral("-I")}, {}};
    }
    return {};
}

} // namespace

QString DesktopEntry::name(const QStringList& locales) const {
    for (const QString& locale : locales) {
        if (const auto found = names.constFind(locale); found != names.constEnd()) {
            return *found;
        }
    }
    return names.value(QString());
}

QStringList commandWords(QStringView exec) {
    QStringList words;
    QString word;
    bool isQuoted = false;
    bool isWord = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar letter = exec[i];
        if (letter == u'"') {
            isQuoted = !isQuoted;
            isWord = true;
        } else if (letter == u'\\' && isQuoted && i + 1 < exec.size()) {
            word += exec[++i];
        } else if (letter.isSpace() && !isQuoted) {
            if (isWord) {
                words.append(std::exchange(word, {}));
            }
            isWord = false;
        } else if (letter == u'%' && i + 1 < exec.size()) {
            if (exec[++i] == u'%') {
                word += u'%';
                isWord = true;
            }
        } else {
            word += letter;
            isWord = true;
        }
    }
    if (isWord) {
        words.append(word);
    }
    return words;
}

std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& text) {
    DesktopEntry entry;
    bool isInside = false;
    bool wasInside = false;
    bool isApplication = false;
    for (const QString& raw : QString::fromUtf8(text).split(u'\n')) {
        const QStringView line = QStringView(raw).trimmed();
        if (line.startsWith(u'[')) {
            isInside = line == u"[Desktop Entry]" && !wasInside;
            wasInside = wasInside || isInside;
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!isInside || line.startsWith(u'#') || equals <= 0) {
            continue;
        }
        const QStringView key = line.first(equals).trimmed();
        const QString value = unescapedValue(line.sliced(equals + 1).trimmed());
        if (key == u"Type") {
            isApplication = value == QStringLiteral("Application");
        } else if (key == u"Hidden" && value == QStringLiteral("true")) {
            return std::nullopt;
        } else if (key == u"NoDisplay") {
            entry.isShown = value != QStringLiteral("true");
        } else if (key == u"Exec") {
            entry.command = withoutEnvironment(commandWords(value));
        } else if (key == u"Name") {
            entry.names.insert(QString(), value);
        } else if (key.startsWith(u"Name[") && key.endsWith(u']')) {
            entry.names.insert(key.sliced(5).chopped(1).toString(), value);
        }
    }
    if (!isApplication || entry.names.value(QString()).trimmed().isEmpty()) {
        return std::nullopt;
    }
    return entry;
}

bool isInterpreter(QStringView program) {
    static const QRegularExpression pattern(QStringLiteral(
        "^(python|pypy|perl|ruby|php|lua|node|nodejs|java|mono|gjs|gjs-console|electron|bash|sh|dash|zsh|"
        "ksh|fish|tclsh|wish|guile)[0-9.]*(-[0-9.]+)?$"));
    return pattern.match(program.sliced(program.lastIndexOf(u'/') + 1).toString()).hasMatch();
}

std::optional<QString> interpretedScript(const QStringList& command) {
    if (command.isEmpty() || !isInterpreter(command.first())) {
        return std::nullopt;
    }
    const OptionSyntax habits = habitsOf(fileNameOf(command.first()));
    for (qsizetype i = 1; i < command.size(); ++i) {
        const QString& word = command[i];
        if (word == QStringLiteral("--") || habits.beforeScript.contains(word)) {
            return i + 1 < command.size() && !command[i + 1].isEmpty() ? std::optional(command[i + 1])
                                                                       : std::nullopt;
        }
        if (word == QStringLiteral("-c") || word == QStringLiteral("-e") || word.isEmpty()) {
            return std::nullopt; // the program is given on the command line itself
        }
        if (habits.withValue.contains(word)) {
            ++i;
        } else if (!word.startsWith(u'-') && !word.startsWith(u'+')) {
            return word;
        }
    }
    return std::nullopt;
}

DesktopEntries::DesktopEntries(QStringList folders, QStringList programs, const QString& home)
    : folders_(std::move(folders))
    , programs_(std::move(programs))
    , home_(home.isEmpty() ? QString() : QFileInfo(home).canonicalFilePath()) {}

DesktopEntries DesktopEntries::ofThisComputer() {
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    // Not every session's environment names these.
    for (const QString& folder :
         {QDir::homePath() + QStringLiteral("/.local/share/flatpak/exports/share/applications"),
          QStringLiteral("/var/lib/flatpak/exports/share/applications"),
          QStringLiteral("/var/lib/snapd/desktop/applications")}) {
        if (!folders.contains(folder)) {
            folders.append(folder);
        }
    }
    return {folders,
            qEnvironmentVariable("PATH", QStringLiteral("/usr/local/bin:/usr/bin:/bin"))
                .split(u':', Qt::SkipEmptyParts),
            QDir::homePath()};
}

bool DesktopEntries::update() {
    const bool hasChanged =
        seen_.isEmpty() || std::any_of(seen_.keyBegin(), seen_.keyEnd(), [this](const QString& folder) {
            return QFileInfo(folder).lastModified() != seen_.value(folder);
        });
    if (hasChanged) {
        read();
    }
    return hasChanged;
}

void DesktopEntries::read() {
    seen_.clear();
    entries_.clear();
    for (auto* places : {&ids_, &paths_, &ownFolders_, &programNames_}) {
        places->clear();
    }
    for (const QString& folder : folders_) {
        readFolder(folder);
    }
    for (qsizetype entry = 0; entry < entries_.size(); ++entry) {
        index(entry);
    }
}

void DesktopEntries::readFolder(const QString& folder) {
    QStringList waiting = {folder};
    for (int depth = 0; depth < maxDepth && !waiting.isEmpty(); ++depth) {
        QStringList deeper;
        for (const QString& place : waiting) {
            seen_.insert(place, QFileInfo(place).lastModified());
            const QFileInfoList files =
                QDir(place).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
            for (const QFileInfo& info : files) {
                const QString path = info.filePath();
                if (info.isDir()) {
                    if (!info.isSymLink()) {
                        deeper.append(path);
                    }
                    continue;
                }
                if (!path.endsWith(QStringLiteral(".desktop")) || entries_.size() >= mostEntries) {
                    continue;
                }
                // Slashes in the path below the folder become dashes in the identifier.
                const QString id =
                    path.sliced(folder.size() + 1).chopped(8).replace(u'/', QStringLiteral("-"));
                QFile file(path);
                if (ids_.contains(id) || !file.open(QIODevice::ReadOnly)) {
                    continue;
                }
                auto entry = parseDesktopEntry(file.read(maxEntrySize));
                // A hidden or broken entry also hides those of the same identifier in later folders.
                ids_.insert(id, entry ? entries_.size() : -1);
                if (entry) {
                    entry->id = id;
                    entry->file = path;
                    entries_.append(std::move(*entry));
                }
            }
        }
        waiting = deeper;
    }
}

// The path of the program that a command starts, with all links resolved; empty when the command starts no
// program of its own.
QString DesktopEntries::programOf(const QStringList& command) const {
    QString program = interpretedScript(command).value_or(command.value(0));
    const bool isNone =
        program.isEmpty() || isInterpreter(program) ||
        std::find(launchers.begin(), launchers.end(), QStringView(fileNameOf(program))) != launchers.end();
    if (isNone) {
        return {};
    }
    if (!program.contains(u'/')) {
        program = QStandardPaths::findExecutable(program, programs_);
    }
    return program.startsWith(u'/') ? QFileInfo(program).canonicalFilePath() : QString();
}

bool DesktopEntries::isHome(const QString& folder) const {
    static const QRegularExpression pattern(QStringLiteral("^((/var)?/home/[^/]+|/root)$"));
    return (!home_.isEmpty() && folder == home_) || pattern.match(folder).hasMatch();
}

// A home and the folders right in it ("~/Downloads", "~/bin") contain all sorts of things. So does what
// `isSharedBySystem` names.
bool DesktopEntries::isShared(const QString& folder) const {
    return isSharedBySystem(folder) || isHome(folder) || isHome(parentOf(folder));
}

// The folder that the program's installation has to itself; empty when it is in a shared folder.
QString DesktopEntries::ownFolderOf(const QString& program) const {
    QString folder = parentOf(program);
    // An archive that was unpacked into the home, such as "~/browser/browser".
    const QString name = fileNameOf(program).section(u'.', 0, 0);
    if (isHome(parentOf(folder)) && fileNameOf(folder).compare(name, Qt::CaseInsensitive) == 0) {
        return folder;
    }
    if (isShared(folder)) {
        return {};
    }
    const QString parent = parentOf(folder);
    return fileNameOf(folder) == QStringLiteral("bin") && !isShared(parent) ? parent : folder;
}

void DesktopEntries::index(qsizetype entry) {
    const QStringList& command = entries_[entry].command;
    const QString program = programOf(command);
    if (program.isEmpty()) {
        return;
    }
    offer(paths_, program, entry);
    if (const QString folder = ownFolderOf(program); !folder.isEmpty()) {
        offer(ownFolders_, folder, entry);
    }
    for (const QString& path : {program, interpretedScript(command).value_or(command.first())}) {
        offer(programNames_, fileNameOf(path), entry);
    }
}

// Of several entries that start the same program, the one shown in the menus wins, then the one with the
// fewest arguments; the others are for parts of the application.
void DesktopEntries::offer(QHash<QString, qsizetype>& places, const QString& place, qsizetype entry) {
    const auto known = places.constFind(place);
    if (known == places.constEnd()) {
        places.insert(place, entry);
        return;
    }
    const auto rank = [this](qsizetype which) {
        const DesktopEntry& one = entries_[which];
        return std::make_pair(!one.isShown, one.command.size());
    };
    if (rank(entry) < rank(*known)) {
        places.insert(place, entry);
    }
}

const DesktopEntry* DesktopEntries::at(const QHash<QString, qsizetype>& places, const QString& place) const {
    const auto found = places.constFind(place);
    return found == places.constEnd() || *found < 0 ? nullptr : &entries_[*found];
}

const DesktopEntry* DesktopEntries::withId(const QString& id) const {
    return at(ids_, id);
}

const DesktopEntry* DesktopEntries::ofProgram(const QString& path) const {
    if (const DesktopEntry* entry = at(paths_, path)) {
        return entry;
    }
    QString below = fileNameOf(path);
    for (QString folder = parentOf(path); !folder.isEmpty(); folder = parentOf(folder)) {
        if (const DesktopEntry* entry = at(ownFolders_, folder)) {
            return entry;
        }
        // Programs in "/usr/lib/NAME/…" and "/opt/NAME/…" belong to the command NAME, which may be a script
        // in another folder.
        if (isShared(folder) && holdsInstallations(folder) &&
            path.size() > folder.size() + below.size() + 1) {
            return at(programNames_, below);
        }
        below = fileNameOf(folder);
    }
    return nullptr;
}

const DesktopEntry* DesktopEntries::ofSnap(const QString& snap, const QString& program) const {
    for (const QString& name : {program, snap}) {
        if (const DesktopEntry* entry = withId(snap + u'_' + name)) {
            return entry;
        }
    }
    const DesktopEntry* first = nullptr;
    for (const DesktopEntry& entry : entries_) {
        if (entry.id.startsWith(snap + u'_') && (first == nullptr || entry.id < first->id)) {
            first = &entry;
        }
    }
    return first;
}

} // namespace Fenwhirl
