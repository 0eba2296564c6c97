#include "Fenwhirl/Application/SelfCheck/WindowChecks.h"

#include "Fenwhirl/Application/ProgramMenus.h"
#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SystemTerms.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"
#include "Fenwhirl/Platform/Desktop/SystemChecks.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#include "Fenwhirl/Platform/Toolkit/Clock.h"
#include "Fenwhirl/Processes/ProcessMonitor.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickWindow>
#include <QScreen>
#include <QStringList>
#include <QStyleHints>
#include <QTimer>

#include <chrono>
#include <map>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr int patienceMilliseconds = 5000;
// For a quarter of a second after it closed, the panel ignores requests to open.
constexpr int pauseMilliseconds = 350;

bool waitUntil(const std::function<bool()>& question, int milliseconds = patienceMilliseconds) {
    const QDeadlineTimer deadline(milliseconds);
    QTimer looks; // for what no event announces
    looks.start(std::chrono::milliseconds(20));
    while (!question()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void pause(int milliseconds) {
    static_cast<void>(waitUntil([] { return false; }, milliseconds));
}

// Preferences in memory: nothing that the models store reaches the disk.
class PassingPreferences final : public PreferencesStore {
private:
    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const override {
        const auto entry = values_.find(key);
        return entry == values_.end() ? std::nullopt : std::optional(entry->second);
    }

    void store(const QString& key, std::optional<PreferenceValue> value) override {
        if (value) {
            values_.insert_or_assign(key, *std::move(value));
        } else {
            values_.erase(key);
        }
    }

    PreferenceValues values_;
};

MonitorServices withoutAMac(PreferencesStore& preferences) {
    return {.openSMC = [] { return std::unique_ptr<SMC>(); },
            .helper = {.isInstalled = [] { return false; },
                       .installedVersion = [] { return std::optional<std::string>(); },
                       .run = [](const std::vector<std::string>&) { return false; },
                       .output = [](const std::vector<std::string>&) { return std::string(); },
                       .runAsAdministrator = [](const std::string&) { return false; },
                       .install = [] { return false; }},
            .now = continuousTime,
            .preferences = &preferences,
            .notify = [](const QString&, const QString&) {},
            .loginItem = {.isEnabled = [] { return false; }, .setEnabled = [](bool) { return false; }},
            .runsOwnTimer = false};
}

ViewServices viewServices() {
    return {.computerName = {},
            .notify = [](const QString&, const QString&) {},
            .saveReport = [](const QString&) {},
            .applicationIcon = [](const QString&) { return QString(); },
            .openMain = {},
            .quit = [] {}};
}

QString languageWord() {
    const std::string_view word = rawValue(Localizer::resolved());
    return QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

QRect placeOfAnItem() {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    constexpr QSize size(60, 24);
    return {QPoint(screen.right() - 4 * size.width(), screen.top()), size};
}

// The shortcut of the window that this key chooses; null without one.
QObject* shortcut(QObject& window, const QString& key) {
    for (QObject* const child : window.findChildren<QObject*>()) {
        if (!QByteArray(child->metaObject()->className()).startsWith("QQuickShortcut")) {
            continue;
        }
        if (child->property("enabled").toBool() &&
            child->property("sequences").toStringList().contains(key)) {
            return child;
        }
    }
    return nullptr;
}

} // namespace

struct WindowChecks::Private {
    Private(AppLanguage language, SymbolPainter painter)
        : symbol(std::move(painter))
        , monitor(withoutAMac(preferences))
        , processes(systemProcessServices())
        , appearance(SystemAppearance::create())
        , windows(monitor, processes, *appearance, viewServices()) {
        monitor.setLanguage(language);
    }

    [[nodiscard]] QList<Menu> menus() const {
        return programMenus({.showPage = [](Page) {}, .createReport = [] {}});
    }

    [[nodiscard]] CheckResult statusItem() const;
    [[nodiscard]] CheckResult menuTexts() const;
    [[nodiscard]] CheckResult menuBar() const;
    // Opens the panel and expects it to close after `act`, which returns why it could not act, or nothing.
    [[nodiscard]] CheckResult panel(const std::function<QString(QQuickWindow&)>& act);
    [[nodiscard]] QString chooseItemAgain();

    SymbolPainter symbol;
    PassingPreferences preferences;
    Monitor monitor;
    ProcessMonitor processes;
    std::unique_ptr<SystemAppearance> appearance;
    WindowControl windows;
};

WindowChecks::WindowChecks(AppLanguage language, SymbolPainter symbol)
    : d_(std::make_unique<Private>(language, std::move(symbol))) {}

WindowChecks::~WindowChecks() = default;

CheckResult WindowChecks::Private::statusItem() const {
    const auto begin = std::chrono::steady_clock::now();
    const std::unique_ptr<StatusItem> item = StatusItem::create(symbol);
    item->setText(QStringLiteral("self-check"), {});
    constexpr int barPatienceMilliseconds = 3000; // where there is no bar, all of it passes
    if (!waitUntil([&item] { return item->isPlaced(); }, barPatienceMilliseconds)) {
        return SystemChecks::unplacedStatusItem();
    }
    return CheckResult::pass(QStringLiteral("to be seen after ") +
                             millisecondsText(std::chrono::steady_clock::now() - begin));
}

CheckResult WindowChecks::Private::menuTexts() const {
    for (const QString& word : SystemTerms::all()) {
        if (!SystemTerms::lookup(word)) {
            return CheckResult::fail(QStringLiteral("%1 has no word for \"%2\"").arg(languageWord(), word));
        }
    }
    QStringList titles;
    int count = 0;
    for (const Menu& menu : menus()) {
        titles.append(menu.title);
        for (const MenuItem& item : menu.items) {
            if (item.kind == MenuItem::Kind::separator) {
                continue;
            }
            ++count;
            if (item.title.isEmpty()) {
                return CheckResult::fail(QStringLiteral("an item of %1 has no text").arg(menu.title));
            }
        }
    }
    return CheckResult::pass(
        QStringLiteral("%1: %2; %3 items")
            .arg(languageWord(), titles.join(QStringLiteral(", ")), QString::number(count)));
}

CheckResult WindowChecks::Private::menuBar() const {
    const QList<Menu> shown = menus();
    const std::unique_ptr<MenuBar> bar = MenuBar::create();
    bar->show(shown);
    // The toolkit may put up a bar of its own when the launch is done.
    QCoreApplication::processEvents();
    return SystemChecks::menuBar(shown);
}

CheckResult WindowChecks::Private::panel(const std::function<QString(QQuickWindow&)>& act) {
    if (QGuiApplication::primaryScreen() == nullptr) {
        return CheckResult::skip(QStringLiteral("there is no screen"));
    }
    if (windows.panel() != nullptr) {
        pause(pauseMilliseconds);
    }
    windows.togglePanel(placeOfAnItem());
    const auto isShown = [this] { return windows.panel() != nullptr && windows.panel()->isVisible(); };
    if (!waitUntil([&] { return isShown() && windows.panel()->isExposed(); })) {
        return CheckResult::fail(QStringLiteral("the panel did not open"));
    }
    QQuickWindow& window = *windows.panel();
    const bool hasKeyboard = waitUntil([&] { return window.isActive() || !isShown(); });
    if (!hasKeyboard || !isShown()) {
        window.close();
        return CheckResult::fail(isShown() ? QStringLiteral("the panel did not get the keyboard")
                                           : QStringLiteral("the panel closed by itself"));
    }
    const auto begin = std::chrono::steady_clock::now();
    const QString failure = act(window);
    const bool isClosed = failure.isEmpty() && waitUntil([&] { return !isShown(); });
    const QString time = millisecondsText(std::chrono::steady_clock::now() - begin);
    window.close();
    if (!failure.isEmpty()) {
        return CheckResult::fail(failure);
    }
    return isClosed ? CheckResult::pass(QStringLiteral("closed after ") + time)
                    : CheckResult::fail(QStringLiteral("the panel stayed open"));
}

QString WindowChecks::Private::chooseItemAgain() {
    // Sooner, it would be the second half of a double click.
    pause(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
    windows.togglePanel(placeOfAnItem());
    return {};
}

namespace {

QString pressEscape(QQuickWindow& window) {
    QObject* const escape = shortcut(window, QStringLiteral("Escape"));
    if (escape == nullptr || !QMetaObject::invokeMethod(escape, "activated")) {
        return QStringLiteral("the panel has no shortcut for Escape");
    }
    return {};
}

QString pressBeside(QQuickWindow& window) {
    const QPointF place(-20, window.height() + 20);
    QMouseEvent press(QEvent::MouseButtonPress, place, window.mapToGlobal(place), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &press);
    return {};
}

// Another window of this process takes the keyboard.
QString loseTheKeyboard(QQuickWindow& panel) {
    // Where the focus follows the pointer, only a panel that somebody has come to can be left.
    const QPointF inside(5, 5);
    QEnterEvent enter(inside, inside, panel.mapToGlobal(inside));
    QCoreApplication::sendEvent(&panel, &enter);
    QQuickWindow other;
    other.setTitle(QStringLiteral("Fenwhirl self-check"));
    other.setGeometry(QRect(placeOfAnItem().translated(-400, 300).topLeft(), QSize(120, 60)));
    other.show();
    if (!waitUntil([&] { return other.isExposed(); })) {
        return QStringLiteral("no other window could be shown");
    }
    other.requestActivate();
    static_cast<void>(waitUntil([&] { return !panel.isVisible(); }));
    return {};
}

} // namespace

std::vector<SelfCheck> WindowChecks::checks() {
    Private* const d = d_.get();
    return {{QStringLiteral("status item"), [d] { return d->statusItem(); }},
            {QStringLiteral("menu texts"), [d] { return d->menuTexts(); }},
            {QStringLiteral("menu bar"), [d] { return d->menuBar(); }},
            {QStringLiteral("panel, item again"),
             [d] { return d->panel([d](QQuickWindow&) { return d->chooseItemAgain(); }); }},
            {QStringLiteral("panel, Escape"), [d] { return d->panel(pressEscape); }},
            {QStringLiteral("panel, press beside"), [d] { return d->panel(pressBeside); }},
            {QStringLiteral("panel, focus lost"), [d] { return d->panel(loseTheKeyboard); }}};
}

} // namespace Fenwhirl
