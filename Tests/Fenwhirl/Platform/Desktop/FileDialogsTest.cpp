// The toolkit's own dialog for saving a file, shown where the desktop offers none.

#include "Fenwhirl/Platform/Desktop/FileDialogs.h"

#include "PrivateBus.h"
#include "Support/QtWarnings.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QProxyStyle>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <functional>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

// Gives buttons of dialogs icons, as on most desktops. Without one there are none.
class StyleOfDesktops : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

// Asks where to save a report and calls `answer` with the dialog as soon as it is shown; returns the path.
QString askedPath(const std::function<void(QFileDialog&)>& answer) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            timer.stop();
            answer(*dialog);
        }
    });
    timer.start(1);
    return askSavePath(QStringLiteral("rapport.txt"), QStringLiteral("fr"));
}

TEST(FallbackSaveDialog, HasButtonsOfTextsAloneAndWholeTitlesOfColumns) {
    EXPECT_EQ(askedPath([](QFileDialog& dialog) {
                  const auto* box = dialog.findChild<QDialogButtonBox*>();
                  const auto* list = dialog.findChild<QTreeView*>();
                  EXPECT_TRUE(box != nullptr && list != nullptr);
                  for (const QAbstractButton* button : box->buttons()) {
                      EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
                  }
                  const QHeaderView& header = *list->header();
                  for (int column = 0; column < header.count(); ++column) {
                      EXPECT_GE(header.sectionSize(column), header.sectionSizeHint(column)) << column;
                  }
                  dialog.reject();
              }),
              QString());
}

TEST(FallbackSaveDialog, ProposesTheNameAndAnswersWithTheChosenPath) {
    const QTemporaryDir folder;
    const QString path = askedPath([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(QFileInfo(dialog.selectedFiles().value(0)).fileName(), QStringLiteral("rapport.txt"));
        dialog.setDirectory(folder.path());
        dialog.selectFile(QStringLiteral("autre.txt"));
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    EXPECT_EQ(path, folder.filePath(QStringLiteral("autre.txt")));
}

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings; // Qt's dialog remembers its folder and columns
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    const QApplication application(argc, argv);
    QApplication::setStyle(new Fenwhirl::StyleOfDesktops); // owned by the application
    const Fenwhirl::PrivateBus bus;                        // on which no desktop offers a dialog
    Fenwhirl::QtWarnings::fail();
    return RUN_ALL_TESTS();
}
