#include "Fenwhirl/Platform/Desktop/SingleInstanceLinux.h"
#include "PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace Fenwhirl {

namespace {

QDBusConnection noBus() {
    return QDBusConnection(QStringLiteral("not connected"));
}

// Whether another start in that folder and on that bus finds the first instance and raises it. Its calls
// block until they are answered, so it needs a thread of its own here.
bool raises(SingleInstanceLinux& first, const QString& folder, bool onBus = true) {
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    bool isSecond = false;
    bool told = false;
    std::thread other([&] {
        SingleInstanceLinux second(folder, onBus ? PrivateBus::connect() : noBus());
        isSecond = !second.becomeFirst();
        told = isSecond && second.raiseFirst();
    });
    const bool heard = waitUntil([&] { return raised.count() == 1; });
    other.join();
    return isSecond && told && heard;
}

TEST(SingleInstance, OnlyOneIsFirst) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), noBus());
    SingleInstanceLinux second(folder.path(), noBus());
    EXPECT_TRUE(first.becomeFirst());
    EXPECT_FALSE(second.becomeFirst());
}

TEST(SingleInstance, TheNextIsFirstWhenTheFirstIsGone) {
    const QTemporaryDir folder;
    {
        SingleInstanceLinux first(folder.path(), noBus());
        ASSERT_TRUE(first.becomeFirst());
    }
    SingleInstanceLinux next(folder.path(), noBus());
    EXPECT_TRUE(next.becomeFirst());
}

TEST(SingleInstance, RaisesTheFirstThroughThePipeWithoutABus) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), noBus());
    ASSERT_TRUE(first.becomeFirst());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    SingleInstanceLinux second(folder.path(), noBus());
    ASSERT_FALSE(second.becomeFirst());
    EXPECT_TRUE(second.raiseFirst());
    ASSERT_TRUE(waitUntil([&] { return raised.count() == 1; }));
    EXPECT_TRUE(second.raiseFirst());
    ASSERT_TRUE(waitUntil([&] { return raised.count() == 2; }));
}

TEST(SingleInstance, RaisesTheFirstOverTheBusWithTheRightToTheFocus) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    ASSERT_TRUE(first.becomeFirst());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    qputenv("XDG_ACTIVATION_TOKEN", "token7");
    EXPECT_TRUE(raises(first, folder.path()));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    ASSERT_EQ(raised.count(), 1);
    EXPECT_EQ(raised.at(0).at(0).toString(), QStringLiteral("token7"));
}

TEST(SingleInstance, TheFirstIsToldOfAnActionThroughThePipeAndOverTheBus) {
    const QTemporaryDir folder;
    for (const bool onBus : {false, true}) {
        const QTemporaryDir place;
        SingleInstanceLinux first(place.path(), onBus ? PrivateBus::connect() : noBus());
        ASSERT_TRUE(first.becomeFirst());
        const QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        const QSignalSpy asked(&first, &SingleInstance::actionRequested);
        bool isTold = false;
        std::thread other([&] {
            // On the bus, the second instance uses another folder, in which there is no pipe.
            SingleInstanceLinux second(onBus ? folder.path() : place.path(),
                                       onBus ? PrivateBus::connect() : noBus());
            isTold = !second.becomeFirst() && second.notifyFirst(QStringLiteral("game"));
        });
        EXPECT_TRUE(waitUntil([&] { return asked.count() == 1; }));
        other.join();
        EXPECT_TRUE(isTold);
        EXPECT_EQ(asked.value(0).value(0), QStringLiteral("game"));
        EXPECT_TRUE(raised.isEmpty());
    }
}

TEST(SingleInstance, AnActionThatNobodyHearsIsNotTold) {
    const QTemporaryDir folder;
    SingleInstanceLinux nobody(folder.path(), noBus());
    EXPECT_FALSE(nobody.notifyFirst(QStringLiteral("game")));
}

TEST(SingleInstance, TheDesktopsMenuSpeaksToItByTheUsualInterface) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    ASSERT_TRUE(first.becomeFirst());
    const QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    const QSignalSpy asked(&first, &SingleInstance::actionRequested);
    const QDBusConnection menu = PrivateBus::connect();
    const auto call = [&menu](const QString& method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.fenwhirl.app"), QStringLiteral("/com/fenwhirl/app"),
            QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments);
        static_cast<void>(menu.send(message));
    };
    call(QStringLiteral("ActivateAction"), {QStringLiteral("max"), QVariantList(), QVariantMap()});
    call(QStringLiteral("Open"),
         {QStringList(), QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("token8")}}});
    ASSERT_TRUE(waitUntil([&] { return raised.count() == 1; }));
    EXPECT_EQ(raised.at(0).at(0), QStringLiteral("token8"));
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked.at(0).at(0), QStringLiteral("max"));
}

TEST(SingleInstance, OneWithAnotherFolderIsFoundOnTheBus) {
    const QTemporaryDir folder;
    const QTemporaryDir other;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    ASSERT_TRUE(first.becomeFirst());
    EXPECT_TRUE(raises(first, other.path()));
    EXPECT_TRUE(raises(first, QString()));
    // An instance that was not the first keeps no lock.
    SingleInstanceLinux elsewhere(other.path(), noBus());
    EXPECT_TRUE(elsewhere.becomeFirst());
}

TEST(SingleInstance, ANameThatIsBeingGivenUpIsWaitedFor) {
    const QTemporaryDir folder;
    QDBusConnection dying = PrivateBus::connect();
    std::unique_ptr<SingleInstanceLinux> next;
    bool isFirst = false;
    // The name is waited for during half a second. On a busy computer it may be released later, so the scene
    // is repeated then.
    for (int attempt = 0; attempt < 5 && !isFirst; ++attempt) {
        ASSERT_TRUE(dying.registerService(QStringLiteral("com.fenwhirl.app")));
        next = std::make_unique<SingleInstanceLinux>(folder.path(), PrivateBus::connect());
        // Not a wait for a condition: the name must be released while it is being requested.
        std::thread end([&dying] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            dying.unregisterService(QStringLiteral("com.fenwhirl.app"));
        });
        isFirst = next->becomeFirst();
        end.join();
    }
    ASSERT_TRUE(isFirst);
    EXPECT_TRUE(raises(*next, folder.path()));
}

// Another program that owns the bus name during its lifetime: a copy of this program under another name, or
// under the same name in another folder.
class BusNameOwner {
public:
    explicit BusNameOwner(const QString& program) {
        const QString path = folder_.filePath(program);
        EXPECT_TRUE(QFile::copy(QStringLiteral("/proc/self/exe"), path));
        process_.start(path, {QStringLiteral("--hold-name"),
                              QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS"))});
        const auto holdsIt = [this] {
            process_.waitForReadyRead(10);
            return process_.readAllStandardOutput().contains("holding");
        };
        EXPECT_TRUE(waitUntil(holdsIt)) << process_.readAllStandardError().toStdString();
    }

    ~BusNameOwner() {
        process_.closeWriteChannel();
        process_.waitForFinished();
    }

    BusNameOwner(const BusNameOwner&) = delete;
    BusNameOwner& operator=(const BusNameOwner&) = delete;

private:
    QTemporaryDir folder_;
    QProcess process_;
};

TEST(SingleInstance, AStrangerWithTheNameDoesNotPreventAStart) {
    const PrivateBus bus;
    const BusNameOwner stranger(QStringLiteral("Stranger"));
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    EXPECT_TRUE(first.becomeFirst());
    // Further starts do not ask the stranger to show itself.
    EXPECT_TRUE(raises(first, folder.path()));
}

TEST(SingleInstance, TheSameProgramFromAnotherPlaceIsNoStranger) {
    const PrivateBus bus;
    const BusNameOwner same(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    const QTemporaryDir folder;
    SingleInstanceLinux second(folder.path(), PrivateBus::connect());
    EXPECT_FALSE(second.becomeFirst());
}

TEST(SingleInstance, RunsOnABusThatRefusesTheName) {
    const PrivateBus strict(PrivateBus::Names::refused);
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    EXPECT_TRUE(first.becomeFirst());
    EXPECT_TRUE(raises(first, folder.path()));
}

TEST(SingleInstance, RunsOnABusThatRefusesTheObject) {
    const QTemporaryDir folder;
    QDBusConnection bus = PrivateBus::connect();
    QObject inTheWay;
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/com/fenwhirl/app"), &inTheWay));
    SingleInstanceLinux first(folder.path(), bus);
    EXPECT_TRUE(first.becomeFirst());
    EXPECT_TRUE(raises(first, folder.path()));
    EXPECT_EQ(bus.objectRegisteredAt(QStringLiteral("/com/fenwhirl/app")), &inTheWay);
}

TEST(SingleInstance, RunsWithoutABusThatIsGone) {
    const QTemporaryDir folder;
    auto bus = std::make_unique<PrivateBus>();
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    ASSERT_TRUE(first.becomeFirst());
    const QDBusConnection dead = PrivateBus::connect();
    bus.reset();
    EXPECT_TRUE(raises(first, folder.path(), false));
    const QTemporaryDir other;
    SingleInstanceLinux late(other.path(), dead);
    EXPECT_TRUE(late.becomeFirst());
    EXPECT_TRUE(raises(late, other.path(), false));
}

TEST(SingleInstance, ALinkInPlaceOfThePrivateFolderIsNotTrusted) {
    const QTemporaryDir real;
    const QString link = real.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(real.path(), link));
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", link.toLocal8Bit());
    EXPECT_NE(privateRuntimeFolder(), link);
    qputenv("XDG_RUNTIME_DIR", real.path().toLocal8Bit());
    EXPECT_EQ(privateRuntimeFolder(), real.path());
    qputenv("XDG_RUNTIME_DIR", before);
}

} // namespace

} // namespace Fenwhirl
