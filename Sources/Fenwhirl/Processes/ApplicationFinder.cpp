#include "Fenwhirl/Processes/ApplicationFinder.h"

#include "Fenwhirl/Processes/ControlGroup.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <utility>

namespace Fenwhirl {

namespace {

// A process is examined in each of its first looks, while everything may still change, and
// later in every eighth look.
constexpr unsigned newForLooks = 3;
constexpr unsigned looksBetween = 8;

// The desktop's own components where systemd does not identify them: servers, window
// managers, panels, sessions.
bool isDesktopProgram(const QString& path) {
    static const QSet<QString> names = {
        QStringLiteral("Xorg"),
        QStringLiteral("Xwayland"),
        QStringLiteral("gnome-shell"),
        QStringLiteral("gnome-session-binary"),
        QStringLiteral("gnome-panel"),
        QStringLiteral("mutter"),
        QStringLiteral("metacity"),
        QStringLiteral("plasmashell"),
        QStringLiteral("kwin_x11"),
        QStringLiteral("kwin_wayland"),
        QStringLiteral("ksmserver"),
        QStringLiteral("startplasma-x11"),
        QStringLiteral("kded5"),
        QStringLiteral("kded6"),
        QStringLiteral("xfce4-session"),
        QStringLiteral("xfce4-panel"),
        QStringLiteral("xfwm4"),
        QStringLiteral("xfdesktop"),
        QStringLiteral("xfsettingsd"),
        QStringLiteral("mate-session"),
        QStringLiteral("mate-panel"),
        QStringLiteral("marco"),
        QStringLiteral("mate-settings-daemon"),
        QStringLiteral("cinnamon"),
        QStringLiteral("cinnamon-session"),
        QStringLiteral("muffin"),
        QStringLiteral("nemo-desktop"),
        QStringLiteral("lxqt-session"),
        QStringLiteral("lxqt-panel"),
        QStringLiteral("lxsession"),
        QStringLiteral("lxpanel"),
        QStringLiteral("openbox"),
        QStringLiteral("budgie-panel"),
        QStringLiteral("budgie-wm"),
        QStringLiteral("sway"),
        QStringLiteral("waybar"),
        QStringLiteral("i3"),
        QStringLiteral("labwc"),
        QStringLiteral("wayfire"),
        QStringLiteral("weston"),
        QStringLiteral("Hyprland"),
        QStringLiteral("dbus-daemon"),
        QStringLiteral("dbus-broker"),
        QStringLiteral("systemd"),
        QStringLiteral("pipewire"),
        QStringLiteral("wireplumber"),
        QStringLiteral("pulseaudio"),
    };
    return names.contains(QFileInfo(path).fileName());
}

} // namespace

ApplicationFinder::ApplicationFinder(DesktopEntries entries, Read read)
    : entries_(std::move(entries))
    , read_(std::move(read)) {}

void ApplicationFinder::beginSample(const QStringList& locales) {
    locales_ = locales;
    if (entries_.update()) {
        known_.clear();
    }
    ++look_;
    // A process that was not seen in the last look has ended.
    known_.removeIf([this](const auto& process) { return process.value().lastLook + 1 < look_; });
}

bool ApplicationFinder::isStale(qint32 pid, const Known& known) const {
    return look_ - known.firstLook < newForLooks || (look_ + static_cast<unsigned>(pid)) % looksBetween == 0;
}

std::optional<FoundApplication>
ApplicationFinder::applicationOf(qint32 pid, std::optional<ProcessStart> start, QStringView path) {
    if (!start) {
        return std::nullopt;
    }
    const auto place = known_.find(pid);
    const bool isSame = place != known_.end() && place->start == *start && place->path == path;
    if (isSame && !isStale(pid, *place)) {
        place->lastLook = look_;
        return shown(*place);
    }
    Known found = find(pid, path.toString());
    found.start = *start;
    found.path = path.toString();
    found.firstLook = isSame ? place->firstLook : look_;
    found.lastLook = look_;
    return shown(*known_.insert(pid, found));
}

std::optional<FoundApplication> ApplicationFinder::shown(const Known& known) const {
    if (known.entry != nullptr) {
        return FoundApplication{.name = known.entry->name(locales_),
                                .file = known.entry->file,
                                .canQuit = known.entry->isShown && !known.isDesktopComponent};
    }
    if (!known.label.isEmpty()) {
        return FoundApplication{.name = known.label, .file = {}, .canQuit = false};
    }
    return std::nullopt;
}

ApplicationFinder::Known ApplicationFinder::find(qint32 pid, const QString& path) const {
    Known known;
    const std::optional<ProcessOrigin> origin = read_(pid);
    if (!origin) {
        return known;
    }
    known.isDesktopComponent = isDesktopComponent(origin->controlGroup) || isDesktopProgram(path);
    if (known.isDesktopComponent) {
        known.entry = entries_.ofProgram(path);
        return known;
    }
    known.entry = byControlGroup(origin->controlGroup);
    if (known.entry == nullptr && path.startsWith(QStringLiteral("/snap/"))) {
        known.entry = entries_.ofSnap(path.section(u'/', 2, 2));
    }
    if (known.entry == nullptr &&
        (path.startsWith(QStringLiteral("/app/")) || path.startsWith(QStringLiteral("/newroot/app/")))) {
        if (const auto id = origin->flatpak()) {
            known.entry = entries_.withId(*id);
        }
    }
    if (known.entry != nullptr) {
        return known;
    }
    if (isInterpreter(path)) {
        QStringList command = origin->arguments();
        if (!command.isEmpty()) {
            command.first() = path; // a process can change its own first argument
        }
        if (const auto script = interpretedScript(command)) {
            known.label = QFileInfo(*script).fileName();
            const QString place = QDir(origin->workingFolder()).filePath(*script);
            known.entry = entries_.ofProgram(QFileInfo(place).canonicalFilePath());
            if (known.entry != nullptr) {
                return known;
            }
        }
    }
    known.entry = entries_.ofProgram(path);
    return known;
}

const DesktopEntry* ApplicationFinder::byControlGroup(const QString& group) const {
    if (const auto snap = snapIn(group)) {
        return entries_.ofSnap(snap->snap, snap->program);
    }
    for (const QString& id : applicationIdsIn(group)) {
        if (const DesktopEntry* entry = entries_.withId(id)) {
            return entry;
        }
    }
    return nullptr;
}

} // namespace Fenwhirl
