#include "Fenwhirl/Platform/Desktop/StatusItemLinux.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include <utility>

namespace Fenwhirl {

namespace {

// Converts the hosts' coordinates, which are physical pixels, to points of the virtual desktop.
QPoint pointOfPixel(QPoint pixel) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        const double ratio = screen->devicePixelRatio();
        const QRect points = screen->geometry();
        // Qt scales a screen's size but not its position.
        const QRect pixels(points.topLeft(), points.size() * ratio);
        if (pixels.contains(pixel)) {
            return points.topLeft() + (QPointF(pixel - points.topLeft()) / ratio).toPoint();
        }
    }
    return pixel;
}

// The window that Qt puts into the classic tray, or null if there is none. It is private to Qt; only its size
// is used here.
QWidget* classicWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QSystemTrayIconSys")) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace

std::unique_ptr<StatusItem> StatusItem::create(SymbolPainter symbol) {
    return std::make_unique<StatusItemLinux>(std::move(symbol), QDBusConnection::sessionBus(),
                                             SystemAppearance::create());
}

StatusItemLinux::StatusItemLinux(SymbolPainter symbol, const QDBusConnection& bus,
                                 std::unique_ptr<SystemAppearance> appearance)
    : symbol_(std::move(symbol))
    , bus_(bus)
    , host_(bus)
    , appearance_(std::move(appearance)) {
    connect(&host_, &StatusNotifierHost::availableChanged, this, &StatusItemLinux::place);
    connect(appearance_.get(), &SystemAppearance::changed, this, &StatusItemLinux::updateContent);
}

void StatusItemLinux::postpone() {
    isPostponed_ = true;
}

void StatusItemLinux::appear() {
    isPostponed_ = false;
    if (std::exchange(hasPlaceToTake_, false)) {
        place();
    }
}

void StatusItemLinux::place() {
    hasPlaceToTake_ = isPostponed_;
    if (isPostponed_) {
        return;
    }
    if (host_.isAvailable()) {
        showNotifierItem();
    } else {
        showClassicIcon();
    }
    updateContent();
    Q_EMIT placedChanged();
}

void StatusItemLinux::showNotifierItem() {
    if (classic_) {
        classic_->hide();
    }
    forgetIcons();
    quirks_ = statusHostHabits(host_.program());
    if (quirks_.text == StatusHostQuirks::Text::asLabel) {
        item_ = std::make_unique<LabelledStatusNotifierItem>(bus_, quirks_);
    } else {
        item_ = std::make_unique<StatusNotifierItem>(bus_, quirks_);
    }
    connect(item_.get(), &StatusNotifierItem::activated, this, [this](QPoint pixel, const QString& token) {
        // Hosts that do not know the item's position send zeros. The pointer was on the item a moment ago.
        const bool known = quirks_.reportsClickPosition && !pixel.isNull();
        const QPoint place = known ? pointOfPixel(pixel) : QCursor::pos();
        Q_EMIT activated(QRect(place, QSize(0, 0)), token);
    });
    if (!menu_.empty()) {
        item_->setMenu(menu_);
    }
    updateContent(); // before `announce`, because the host then reads everything at once
    item_->announce();
}

void StatusItemLinux::showClassicIcon() {
    item_.reset();
    forgetIcons();
    quirks_ = {.text = StatusHostQuirks::Text::inIcon};
    askedWidth_ = 0;
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return; // the classic tray needs widgets
    }
    if (!classic_) {
        classic_ = std::make_unique<QSystemTrayIcon>();
        connect(classic_.get(), &QSystemTrayIcon::activated, this, [this](int reason) {
            if (reason == QSystemTrayIcon::Context && !menu_.empty()) {
                showClassicMenu();
                return;
            }
            const QRect place = classic_->geometry();
            Q_EMIT activated(place.isEmpty() ? QRect(QCursor::pos(), QSize(0, 0)) : place);
        });
    }
    updateContent();
    classic_->show(); // the icon appears on its own when a tray starts later
    shown_.reset();   // the icon is set again, because its window may exist now and can be widened
}

bool StatusItemLinux::isPlaced() const {
    if (host_.isAvailable()) {
        return !isPostponed_;
    }
    return classic_ && classic_->isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

void StatusItemLinux::setMenu(const StatusMenu& menu) {
    menu_ = menu;
    if (item_) {
        item_->setMenu(menu_);
    }
}

// The menu is created each time: it is hardly ever opened, and an unused menu would take memory.
void StatusItemLinux::showClassicMenu() {
    classicMenu_ = std::make_unique<QMenu>();
    for (const StatusMenuEntry& entry : menu_) {
        if (entry.isSeparator()) {
            classicMenu_->addSeparator();
            continue;
        }
        QString text = entry.text;
        // A single & would mark an access key.
        QAction* const action = classicMenu_->addAction(text.replace(u'&', QStringLiteral("&&")));
        action->setCheckable(entry.isCurrent.has_value());
        action->setChecked(entry.isCurrent.value_or(false));
        connect(action, &QAction::triggered, this, [choose = entry.choose] { choose(); });
    }
    classicMenu_->popup(QCursor::pos());
}

void StatusItemLinux::setText(const QString& text, const QString& shortText, TextChange change) {
    if (text == text_ && shortText == shortText_) {
        return;
    }
    text_ = text;
    const bool changesIcon = std::exchange(shortText_, shortText) != shortText;
    if (item_ && change == TextChange::slight && !changesIcon) {
        item_->setTextQuietly(text_);
    } else {
        updateContent();
    }
}

void StatusItemLinux::updateContent() {
    const bool written = quirks_.text == StatusHostQuirks::Text::asLabel;
    const IconKey wanted(written ? QString() : shortText_, quirks_.barIsDark || appearance_->isDark());
    const bool changes = shown_ != wanted;
    shown_ = wanted;
    if (item_) {
        if (changes) {
            item_->setIcons(icons(wanted));
        }
        item_->setText(text_);
    } else if (classic_) {
        if (changes) {
            setClassicIcon(wanted);
        }
        classic_->setToolTip(text_);
    }
}

// A classic tray either grants its window the requested width or makes the window square anyway. Which of the
// two becomes visible only when the next temperature arrives.
void StatusItemLinux::setClassicIcon(const IconKey& key) {
    QWidget* const window = classicWindow();
    if (window != nullptr && window->width() < askedWidth_) {
        quirks_.text = StatusHostQuirks::Text::inSquare;
        drawn_.clear();
    }
    const QList<QImage> images = icons(key);
    QIcon icon;
    for (const QImage& image : images) {
        icon.addPixmap(QPixmap::fromImage(image));
    }
    classic_->setIcon(icon);
    if (window != nullptr) {
        askedWidth_ = images.first().width();
        window->setFixedWidth(askedWidth_);
    }
}

void StatusItemLinux::forgetIcons() {
    shown_.reset();
    drawn_.clear(); // another host may need other icons
}

QList<QImage> StatusItemLinux::icons(const IconKey& key) {
    if (const QList<QImage>* drawn = drawn_.object(key)) {
        return *drawn;
    }
    const StatusIconShape shape =
        quirks_.text == StatusHostQuirks::Text::inIcon ? StatusIconShape::wide : StatusIconShape::square;
    QList<QImage> made;
    for (const int height : {22, 24, 32, 44, 48}) { // common sizes, so that hosts rarely have to scale
        made.append(statusIcon(symbol_, key.first, height, key.second, shape));
    }
    drawn_.insert(key, new QList<QImage>(made)); // the cache owns it
    return made;
}

} // namespace Fenwhirl
