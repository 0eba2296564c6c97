// The applications that a Linux desktop has in its menus, found by their identifier and by their files.
//
// A desktop entry is read as far as an application's load is charged by it: what it is called, what it
// starts, its icon is left to whoever draws it. Entries that are broken, hidden or start no program of their
// own are left out; of two with the same identifier the one in the earlier folder counts.
//
// Threads: one at a time; reads files. Anyone may put entries into their own folders: texts are theirs.

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

struct DesktopEntry {
    QString id;                    // "org.gnome.Calculator"
    QString file;                  // its path
    QHash<QString, QString> names; // by locale; the one without a locale under the empty text
    QStringList command;           // the words of "Exec" without its field codes
    bool isShown = true;           // in the menus
    [[nodiscard]] bool operator==(const DesktopEntry&) const = default;

    // The name for the first of these locales that has one, else the one without a locale.
    [[nodiscard]] QString name(const QStringList& locales) const;
};

// The entry in the text of a file; nothing when it is none of an application, is hidden, or lacks a name.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& text);

// The words of a command line as desktop entries quote them.
[[nodiscard]] QStringList commandWords(QStringView exec);

// The script that an interpreter was started with ("app.py" for "python3 -u app.py"), as it was written;
// nothing when `command` starts no interpreter, or one without a script.
[[nodiscard]] std::optional<QString> interpretedScript(const QStringList& command);
[[nodiscard]] bool isInterpreter(QStringView program);

class DesktopEntries {
public:
    // `folders`: of entries, the most important first; `programs`: where commands without a path are looked
    // for.
    DesktopEntries(QStringList folders, QStringList programs);

    // The usual places of this computer and user.
    [[nodiscard]] static DesktopEntries ofThisComputer();

    // Reads the entries anew if a folder has changed since; what they point to is invalid then. True then.
    bool update();

    // Null when there is none.
    [[nodiscard]] const DesktopEntry* withId(const QString& id) const;
    // The entry that starts this program, or the one in whose own folder it lies.
    [[nodiscard]] const DesktopEntry* ofProgram(const QString& path) const;
    // The entry of a snap by the snap's name, and that of one of its programs where it has its own.
    [[nodiscard]] const DesktopEntry* ofSnap(const QString& snap, const QString& program = {}) const;

private:
    void read();
    void readFolder(const QString& folder);
    void index(qsizetype entry);
    void offer(QHash<QString, qsizetype>& places, const QString& place, qsizetype entry);
    [[nodiscard]] QString programOf(const QStringList& command) const;
    [[nodiscard]] const DesktopEntry* at(const QHash<QString, qsizetype>& places, const QString& place) const;

    QStringList folders_;
    QStringList programs_;
    QHash<QString, QDateTime> seen_; // the folders, and when they last changed
    QList<DesktopEntry> entries_;
    QHash<QString, qsizetype> ids_;
    QHash<QString, qsizetype> paths_;
    QHash<QString, qsizetype> ownFolders_;
    QHash<QString, qsizetype> programNames_;
};
