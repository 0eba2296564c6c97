// The applications in the menus of a Linux desktop, found by their identifier or by their files.
//
// Of a desktop entry only what attributes load to an application is read: its names and what it starts. The
// icon is left to the code that draws it. Broken and hidden entries are left out; an entry that starts no
// program of its own is found by its identifier only. Of two entries with the same identifier, the one in the
// earlier folder wins.
//
// Threads: one at a time; reads files. Anyone may put entries into their own folders, so their
// texts are not trustworthy.

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace Fenwhirl {

struct DesktopEntry {
    QString id;                    // "org.gnome.Calculator"
    QString file;                  // the path of the entry
    QHash<QString, QString> names; // by locale; the name without a locale under the empty key
    QStringList command;           // the words of "Exec" without its field codes
    bool isShown = true;           // whether the menus show it
    [[nodiscard]] bool operator==(const DesktopEntry&) const = default;

    // The name for the first of these locales that has one; otherwise the name without a locale.
    [[nodiscard]] QString name(const QStringList& locales) const;
};

// The entry in the text of a file; absent when it is not an application's, is hidden, or lacks a name.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& text);

// Splits a command line into words by the quoting rules of desktop entries.
[[nodiscard]] QStringList commandWords(QStringView exec);

// The script that an interpreter was started with, as written ("app.py" for "python3 -u app.py"); absent when
// `command` starts no interpreter, or starts one without a script.
[[nodiscard]] std::optional<QString> interpretedScript(const QStringList& command);
[[nodiscard]] bool isInterpreter(QStringView program);

class DesktopEntries {
public:
    // `folders` contain the entries, the most important first; `programs` are searched for
    // commands without a path; `home` is this user's home folder, empty if there is none.
    DesktopEntries(QStringList folders, QStringList programs, const QString& home);

    // Searches the usual folders of this computer and user.
    [[nodiscard]] static DesktopEntries ofThisComputer();

    // Reads the entries again if a folder has changed since. Returns whether it did; all pointers to entries
    // are invalid then.
    bool update();

    // Null when there is no such entry.
    [[nodiscard]] const DesktopEntry* withId(const QString& id) const;
    // The entry that starts this program, whose own folder contains it, or whose command has the name of the
    // program's folder among the installed programs (/opt, /usr/lib and the like).
    [[nodiscard]] const DesktopEntry* ofProgram(const QString& path) const;
    // The entry of a snap by its name, or that of one of its programs if it has an entry of its own.
    [[nodiscard]] const DesktopEntry* ofSnap(const QString& snap, const QString& program = {}) const;

private:
    void read();
    void readFolder(const QString& folder);
    void index(qsizetype entry);
    void offer(QHash<QString, qsizetype>& places, const QString& place, qsizetype entry);
    [[nodiscard]] QString programOf(const QStringList& command) const;
    [[nodiscard]] bool isHome(const QString& folder) const;
    [[nodiscard]] bool isShared(const QString& folder) const;
    [[nodiscard]] QString ownFolderOf(const QString& program) const;
    [[nodiscard]] const DesktopEntry* at(const QHash<QString, qsizetype>& places, const QString& place) const;

    QStringList folders_;
    QStringList programs_;
    QString home_;                   // with all links resolved
    QHash<QString, QDateTime> seen_; // the folders that were read, and when each had last changed
    QList<DesktopEntry> entries_;
    QHash<QString, qsizetype> ids_;
    QHash<QString, qsizetype> paths_;
    QHash<QString, qsizetype> ownFolders_;
    QHash<QString, qsizetype> programNames_;
};

} // namespace Fenwhirl
