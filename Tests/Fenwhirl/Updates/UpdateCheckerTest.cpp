#include "Fenwhirl/Updates/UpdateChecker.h"

#include "Fenwhirl/Updates/TestAuthority.h"
#include "Fenwhirl/Updates/TestSite.h"
#include "Support/MainThreadPauses.h"
#include "Support/MemoryPreferences.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace Fenwhirl {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int patienceMilliseconds = 60'000;
constexpr double launchTime = 1'700'000'000;
const QString lastCheckKey = u"brenor.update.lastCheck"_s;
const QString notifiedKey = u"brenor.update.notifiedVersion"_s;

QByteArray documentOf(const QByteArray& version, const QByteArray& page = "https://fenwhirl.example/get") {
    return R"({"version": ")" + version + R"(", "page": ")" + page + R"("})";
}

// Successive launches of the program on one machine, with one web site.
class UpdateChecking : public testing::Test {
protected:
    UpdateChecking() {
        services.now = [this] { return now; };
        services.bundleName = u"Fenwhirl"_s;
        services.bundleVersion = u"1.2.0"_s;
        services.domain = u"fenwhirl.example"_s;
        services.preferences = &preferences;
        services.languageCode = [this] { return language; };
        services.show = [this](const UpdateAlert& alert) {
            notifiedWhenShown = preferences.text(notifiedKey);
            shownOn = QThread::currentThread();
            alerts.append(alert);
        };
        services.transport.authorities = QList{authority.certificate()};
        services.transport.proxy = site.proxy();
    }

    // Launches the program and waits for the end of its check; returns false when there was no check.
    bool launch() {
        UpdateChecker checker(services);
        QSignalSpy finished(&checker, &UpdateChecker::finished);
        checker.startIfNeeded();
        if (!checker.isChecking()) {
            return false;
        }
        EXPECT_TRUE(finished.wait(patienceMilliseconds));
        return true;
    }

    void offer(const QByteArray& version) { site.answerWith(httpAnswer(200, documentOf(version))); }

    TestAuthority authority;
    TestSite site{authority.identityFor(u"fenwhirl.example"_s)};
    MemoryPreferences preferences;
    UpdateServices services;
    double now = launchTime;
    QString language = u"fr"_s;
    QList<UpdateAlert> alerts;
    std::optional<QString> notifiedWhenShown;
    QThread* shownOn = nullptr;
};

} // namespace

TEST_F(UpdateChecking, OffersANewerVersion) {
    offer("1.3");
    EXPECT_TRUE(launch());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Une nouvelle version est disponible"_s);
    EXPECT_EQ(
        alerts[0].body,
        u"La version 1.3 de Fenwhirl est disponible. Elle est gratuite pour toi. Tu as la version 1.2.0."_s);
    EXPECT_EQ(alerts[0].download, u"Télécharger"_s);
    EXPECT_EQ(alerts[0].later, u"Plus tard"_s);
    EXPECT_EQ(alerts[0].page, QUrl(u"https://fenwhirl.example/get"_s));
    EXPECT_EQ(shownOn, QThread::currentThread());
    EXPECT_EQ(preferences.number(lastCheckKey), launchTime);
    ASSERT_EQ(site.requests().size(), 1);
    EXPECT_TRUE(site.requests()[0].startsWith("GET /maj/fenwhirl.json "));
    EXPECT_EQ(site.destinations(), QList<QByteArray>{"fenwhirl.example:443"});
}

TEST_F(UpdateChecking, RemembersTheVersionBeforeTheAlertIsShown) {
    offer("1.3");
    EXPECT_TRUE(launch());
    EXPECT_EQ(notifiedWhenShown, u"1.3"_s);
}

TEST_F(UpdateChecking, RestsForADayAfterAValidAnswer) {
    offer("1.0");
    preferences.setNumber(lastCheckKey, launchTime - 86'399);
    EXPECT_FALSE(launch());
    EXPECT_TRUE(site.destinations().isEmpty());
    EXPECT_EQ(preferences.number(lastCheckKey), launchTime - 86'399);

    preferences.setNumber(lastCheckKey, launchTime - 86'400);
    EXPECT_TRUE(launch());
    EXPECT_EQ(preferences.number(lastCheckKey), launchTime);
}

TEST_F(UpdateChecking, TakesTheTimeOfTheLastCheckAsItStands) {
    offer("1.0");
    preferences.setNumber(lastCheckKey, launchTime + 1e6);
    EXPECT_FALSE(launch()) << "in the future";
    preferences.setNumber(lastCheckKey, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(launch()) << "no number";
    preferences.setNumber(lastCheckKey, std::numeric_limits<double>::infinity());
    EXPECT_FALSE(launch());
    preferences.setText(lastCheckKey, QString::number(launchTime));
    EXPECT_FALSE(launch()) << "the same number as a text";
    preferences.setText(lastCheckKey, u"hier"_s);
    EXPECT_TRUE(launch()) << "a text that spells no number";
    preferences.setData(lastCheckKey, "1");
    EXPECT_TRUE(launch()) << "no number at all";
}

TEST_F(UpdateChecking, IsContentWithTheSameVersion) {
    offer("1.2");
    EXPECT_TRUE(launch());
    EXPECT_TRUE(alerts.isEmpty());
    EXPECT_EQ(preferences.number(lastCheckKey), launchTime);
    EXPECT_FALSE(preferences.contains(notifiedKey));
}

TEST_F(UpdateChecking, ShowsEachVersionOnce) {
    offer("1.3");
    EXPECT_TRUE(launch());
    now += 86'400;
    EXPECT_TRUE(launch());
    EXPECT_EQ(alerts.size(), 1);
    EXPECT_EQ(preferences.number(lastCheckKey), now);
    now += 86'400;
    offer("1.4");
    EXPECT_TRUE(launch());
    EXPECT_EQ(alerts.size(), 2);
    EXPECT_EQ(preferences.text(notifiedKey), u"1.4"_s);
}

TEST_F(UpdateChecking, ComparesTheShownVersionToTheLetter) {
    preferences.setText(notifiedKey, u"1.3.0"_s);
    offer("1.3");
    EXPECT_TRUE(launch());
    EXPECT_EQ(alerts.size(), 1);
}

TEST_F(UpdateChecking, AsksForTheLanguageWhenTheAlertIsShown) {
    offer("1.3");
    language = u"sr-Cyrl"_s;
    EXPECT_TRUE(launch());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Доступна је нова верзија"_s);
    EXPECT_EQ(alerts[0].body,
              u"Верзија 1.3 програма Fenwhirl је доступна. Бесплатна је за тебе. Имаш верзију 1.2.0."_s);
}

TEST_F(UpdateChecking, SpeaksFrenchUnlessToldOtherwise) {
    EXPECT_EQ(UpdateServices().languageCode(), u"fr"_s);
}

TEST_F(UpdateChecking, IsSilentAndTriesAgainAfterEveryKindOfFailure) {
    const QByteArray good = documentOf("1.3");
    for (const QByteArray& answer : {
             httpAnswer(404, good),
             httpAnswer(500, good),
             httpAnswer(204, ""),
             httpAnswer(200, ""),
             httpAnswer(200, "<html>"),
             httpAnswer(200, "[]"),
             httpAnswer(200, R"({"version": "1.3"})"),
             httpAnswer(200, R"({"page": "https://fenwhirl.example/"})"),
             httpAnswer(200, R"({"version": 1.3, "page": "https://fenwhirl.example/"})"),
             httpAnswer(200, documentOf("1.3", "http://fenwhirl.example/get")),
             httpAnswer(200, documentOf("1.3", "https://other.example/get")),
             httpAnswer(200, documentOf("1.3", "https://notfenwhirl.example/get")),
             httpAnswer(200, documentOf("1.3", "not an address")),
             httpRedirection("http://fenwhirl.example/"),
             QByteArray("nonsense"),
         }) {
        site.answerWith(answer, TestSite::Then::close);
        EXPECT_TRUE(launch()) << answer.constData();
        EXPECT_TRUE(alerts.isEmpty()) << answer.constData();
        EXPECT_FALSE(preferences.contains(lastCheckKey)) << answer.constData();
        EXPECT_FALSE(preferences.contains(notifiedKey)) << answer.constData();
    }
    site.answerWith(httpAnswer(200, good));
    EXPECT_TRUE(launch());
    EXPECT_EQ(alerts.size(), 1);
}

TEST_F(UpdateChecking, IsSilentAndTriesAgainWhenTheCertificateIsNotGood) {
    const QString host = u"fenwhirl.example"_s;
    TestAuthority stranger;

    struct Case {
        const char* what;
        ServerIdentity identity;
    };

    for (const Case& bad : {
             Case{"expired", authority.identityFor(host, 0)},
             Case{"for another host", authority.identityFor(u"other.example"_s)},
             Case{"of an unknown authority", stranger.identityFor(host)},
             Case{"self-signed", authority.selfSigned(host)},
         }) {
        TestSite suspect(bad.identity);
        suspect.answerWith(httpAnswer(200, documentOf("1.3")));
        services.transport.proxy = suspect.proxy();
        EXPECT_TRUE(launch()) << bad.what;
        EXPECT_TRUE(alerts.isEmpty()) << bad.what;
        EXPECT_FALSE(preferences.contains(lastCheckKey)) << bad.what;
        EXPECT_FALSE(preferences.contains(notifiedKey)) << bad.what;
        EXPECT_TRUE(suspect.requests().isEmpty()) << bad.what;
    }
    services.transport.proxy = site.proxy();
    offer("1.3");
    EXPECT_TRUE(launch());
    EXPECT_EQ(alerts.size(), 1);
}

TEST_F(UpdateChecking, IsSilentWhenTheServerIs) {
    services.transport.idleLimit = 1s; // so long that the request arrives on a busy computer, too
    EXPECT_TRUE(launch());
    EXPECT_FALSE(site.requests().isEmpty());
    EXPECT_TRUE(alerts.isEmpty());
    EXPECT_FALSE(preferences.contains(lastCheckKey));
}

TEST_F(UpdateChecking, OffersPagesOfSubdomains) {
    site.answerWith(httpAnswer(200, documentOf("1.3", "https://www.fenwhirl.example/get")));
    EXPECT_TRUE(launch());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].page, QUrl(u"https://www.fenwhirl.example/get"_s));
}

TEST_F(UpdateChecking, NeedsANameAndAnAddress) {
    offer("1.3");
    services.bundleName.reset();
    EXPECT_FALSE(launch());
    services.bundleName = u"two words"_s;
    EXPECT_FALSE(launch());
    services.bundleName = u"Fenwhirl"_s;
    services.domain.clear();
    EXPECT_FALSE(launch());
    EXPECT_TRUE(site.destinations().isEmpty());
}

TEST_F(UpdateChecking, TakesAMissingVersionForZero) {
    services.bundleVersion.reset();
    offer("0.0.1");
    EXPECT_TRUE(launch());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_TRUE(alerts[0].body.endsWith(u"Tu as la version 0."_s));
}

TEST(UpdateAlert, ShowsAShortPrintableVersionAsItCame) {
    for (const QString& version : {u"1.3"_s, u"3.0 bêta “été” <b>&amp;</b>"_s, u"2.0 (42) Ћ 日本"_s,
                                   u"1.0\u00a0β😀"_s, u"7 %1 %d %@ \\1"_s, QString(100, u'9')}) {
        const UpdateAlert alert = updateAlert(u"fr"_s, u"Fenwhirl"_s, u"1.2"_s, {version, QUrl()});
        EXPECT_EQ(alert.body, u"La version "_s + version +
                                  u" de Fenwhirl est disponible. Elle est gratuite pour toi. "
                                  u"Tu as la version 1.2."_s);
    }
}

TEST_F(UpdateChecking, ShowsAStrangeVersionCutAndHarmless) {
    const QByteArray version = "9" + QByteArray(500'000, 'x');
    offer("8.\\n" + version);
    services.bundleVersion = u"1"_s;
    EXPECT_TRUE(launch());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_LT(alerts[0].body.size(), 250);
    EXPECT_FALSE(alerts[0].body.contains(u'\n'));
    EXPECT_EQ(preferences.text(notifiedKey)->size(), version.size() + 3) << "remembered as it came";
}

TEST_F(UpdateChecking, KeepsTheMainThreadFreeWhileTheSiteHangs) {
    services.transport.idleLimit = 2s; // enough for the request to arrive, even on a busy computer
    std::unique_ptr<UpdateChecker> checker;
    bool isOver = false;
    const auto pause = longestPause(
        [&] {
            isOver = false;
            checker = std::make_unique<UpdateChecker>(services);
            QObject::connect(checker.get(), &UpdateChecker::finished, checker.get(), [&] { isOver = true; });
            checker->startIfNeeded();
        },
        [&] { return isOver; });
    EXPECT_LT(pause, acceptablePause);
    EXPECT_FALSE(site.requests().isEmpty());
}

TEST_F(UpdateChecking, EndsWithTheProgramInTheMiddleOfACheck) {
    QElapsedTimer elapsed;
    elapsed.start();
    {
        UpdateChecker checker(services);
        checker.startIfNeeded();
        while (site.requests().isEmpty()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    QCoreApplication::processEvents();
    EXPECT_LT(elapsed.elapsed(), 10'000) << "the silent server is not waited for";
    EXPECT_TRUE(alerts.isEmpty());
}

TEST_F(UpdateChecking, SurvivesTheEndOfTheProgramInsideTheAlert) {
    offer("1.3");
    auto checker = std::make_unique<UpdateChecker>(services);
    QEventLoop loop;
    services.show = [&](const UpdateAlert&) {
        checker.reset();
        loop.quit();
    };
    checker = std::make_unique<UpdateChecker>(services);
    checker->startIfNeeded();
    QTimer::singleShot(patienceMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    QCoreApplication::processEvents();
    EXPECT_EQ(checker, nullptr);
}

TEST(SystemUpdateServices, KnowTheProgramAndItsMaker) {
    const UpdateServices services = systemUpdateServices();
    EXPECT_EQ(services.bundleName, u"Fenwhirl"_s);
    EXPECT_EQ(services.bundleVersion, u"0.1"_s);
    EXPECT_FALSE(services.domain.isEmpty());
    EXPECT_GT(services.now(), 1.7e9);
    EXPECT_FALSE(services.transport.authorities);
    EXPECT_FALSE(services.transport.proxy);
}

} // namespace Fenwhirl
