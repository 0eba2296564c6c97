#include "Fenwhirl/Application/WindowGeometry.h"

#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr int largestNumber = 100000; // exceeds every coordinate and length on any desktop
constexpr qint64 maxFileSize = 4096;

std::optional<int> number(const QJsonObject& object, const char* name, int least) {
    const QJsonValue value = object.value(QLatin1String(name));
    const double found = value.toDouble(largestNumber + 1.0);
    if (!(found >= least && found <= largestNumber)) {
        return std::nullopt;
    }
    return static_cast<int>(found);
}

QByteArray textOf(const WindowGeometry& place) {
    return QJsonDocument(QJsonObject{{QStringLiteral("x"), place.area.x()},
                                     {QStringLiteral("y"), place.area.y()},
                                     {QStringLiteral("width"), place.area.width()},
                                     {QStringLiteral("height"), place.area.height()},
                                     {QStringLiteral("maximized"), place.maximized}})
        .toJson();
}

int shared(const QRect& one, const QRect& other) {
    const QRect both = one.intersected(other);
    return both.isEmpty() ? 0 : both.width() * both.height();
}

// Moves a length into a range. If it does not fit, its beginning is visible.
int inside(int position, int length, int low, int high) {
    return std::max(low, std::min(position, high - length));
}

} // namespace

std::optional<WindowGeometry> windowPlaceFrom(const QByteArray& text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const auto x = number(object, "x", -largestNumber);
    const auto y = number(object, "y", -largestNumber);
    const auto width = number(object, "width", 1);
    const auto height = number(object, "height", 1);
    if (!x || !y || !width || !height) {
        return std::nullopt;
    }
    return WindowGeometry{QRect(*x, *y, *width, *height), object.value(QLatin1String("maximized")).toBool()};
}

std::optional<QRect> placeOnScreens(const QRect& area, const QList<QRect>& screens, QSize least) {
    if (screens.isEmpty()) {
        return std::nullopt;
    }
    const QRect& screen =
        *std::max_element(screens.begin(), screens.end(), [&area](const QRect& one, const QRect& other) {
            return shared(one, area) < shared(other, area);
        });
    const QSize size = area.size().boundedTo(screen.size()).expandedTo(least);
    return QRect(QPoint(inside(area.x(), size.width(), screen.x(), screen.x() + screen.width()),
                        inside(area.y(), size.height(), screen.y(), screen.y() + screen.height())),
                 size);
}

WindowGeometryKeeper::WindowGeometryKeeper(QWindow& window, QString file)
    : window_(window)
    , file_(std::move(file)) {
    restore();
    for (const auto changed :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(&window_, changed, this, &WindowGeometryKeeper::note);
    }
    connect(&window_, &QWindow::windowStateChanged, this, &WindowGeometryKeeper::note);
    // visibleChanged(false) comes before the window is gone; the geometry that it reports
    // afterwards is not valid.
    connect(&window_, &QWindow::visibleChanged, this, [this](bool visible) {
        if (visible) {
            note();
        } else {
            save();
        }
    });
}

WindowGeometryKeeper::~WindowGeometryKeeper() {
    note();
    save();
}

void WindowGeometryKeeper::restore() {
    QFile file(file_);
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    saved_ = windowPlaceFrom(file.read(maxFileSize));
    if (!saved_) {
        return;
    }
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.append(screen->availableGeometry());
    }
    if (const auto area = placeOnScreens(saved_->area, screens, window_.minimumSize())) {
        place_ = {*area, saved_->maximized};
        window_.setGeometry(*area);
        if (place_.maximized) {
            window_.setWindowState(Qt::WindowMaximized);
        }
    }
}

void WindowGeometryKeeper::note() {
    if (!window_.isVisible() || window_.windowStates().testFlag(Qt::WindowMinimized)) {
        return;
    }
    place_.maximized = window_.windowStates().testFlag(Qt::WindowMaximized);
    const QSize screen = window_.screen()->availableSize();
    // Maximising changes the size before the state, so the size is checked as well.
    const bool fills = window_.width() >= screen.width() && window_.height() >= screen.height();
    if (window_.windowStates() == Qt::WindowNoState && !fills) {
        place_.area = window_.geometry();
    }
}

void WindowGeometryKeeper::save() {
    if (!place_.area.isValid() || saved_ == place_) {
        return;
    }
    saved_ = place_;
    const QByteArray text = textOf(place_);
    if (QDir().mkpath(QFileInfo(file_).absolutePath())) {
        static_cast<void>(replaceFile(QFile::encodeName(file_).toStdString(),
                                      {text.constData(), static_cast<std::size_t>(text.size())}));
    }
}

} // namespace Fenwhirl
