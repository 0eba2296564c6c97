#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class ApplicationIcon : public testing::Test {
protected:
    ApplicationIcon() {
        QImage red(64, 64, QImage::Format_RGB32);
        red.fill(Qt::red);
        EXPECT_TRUE(red.save(picture));
    }

    [[nodiscard]] QString entry(const QByteArray& text) const {
        const QString path = folder.filePath(QStringLiteral("app.desktop"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path;
    }

    QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("a, b;c.png"));
};

} // namespace

TEST_F(ApplicationIcon, IsTheOneThatTheDesktopEntryNames) {
    const QByteArray text = "[Other]\nIcon=none\n[Desktop Entry]\nName=App\nIcon=" + picture.toUtf8() +
                            "\n[Desktop Action x]\nIcon=other\n";
    const QImage icon = applicationIcon(entry(text), 32);
    EXPECT_EQ(icon.size(), QSize(32, 32));
    EXPECT_EQ(icon.pixelColor(16, 16), QColor(Qt::red));
}

TEST_F(ApplicationIcon, IsNoneForABrokenEntryOrAnUnknownName) {
    for (const char* const text :
         {"", "[Desktop Entry]\n", "[Desktop Entry]\nIcon=\n", "Icon=x",
          "[Desktop Entry]\nIcon=/nonexistent.png\n", "[Desktop Entry]\nIcon=no-theme-has-this\n",
          "\xff\n[Desktop Entry]\nIcon=\xff/../x\n"}) {
        EXPECT_TRUE(applicationIcon(entry(text), 32).isNull()) << text;
    }
    EXPECT_TRUE(applicationIcon(folder.filePath(QStringLiteral("missing.desktop")), 32).isNull());
    EXPECT_TRUE(applicationIcon(QStringLiteral("/opt/No Such Thing.app"), 32).isNull());
}

} // namespace Fenwhirl
