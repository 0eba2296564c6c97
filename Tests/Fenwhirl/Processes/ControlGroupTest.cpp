#include "Fenwhirl/Processes/ControlGroup.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

QString inSession(const QString& unit) {
    return u"/user.slice/user-1000.slice/user@1000.service/app.slice/"_s + unit;
}

} // namespace

TEST(ControlGroup, IsThatOfTheUnifiedHierarchyOrOfSystemdsOwn) {
    EXPECT_EQ(controlGroupIn("0::/user.slice/a b\n"), u"/user.slice/a b"_s);
    EXPECT_EQ(controlGroupIn("12:pids:/x\n1:name=systemd:/user.slice/y\n0::/\n"), u"/user.slice/y"_s);
    for (const char* const text : {"", "0::/\n", "nonsense", "0:", ":::\n\n", "1:name=systemd"}) {
        EXPECT_EQ(controlGroupIn(text), QString()) << text;
    }
}

TEST(ControlGroup, NamesTheApplicationWithAndWithoutItsLauncher) {
    EXPECT_EQ(applicationIdsIn(inSession(u"app-gnome-org.gnome.Calculator-4711.scope"_s)),
              (QStringList{u"gnome-org.gnome.Calculator"_s, u"org.gnome.Calculator"_s}));
    EXPECT_EQ(applicationIdsIn(inSession(u"app-flatpak-org.mozilla.firefox-123.scope"_s)).last(),
              u"org.mozilla.firefox"_s);
    EXPECT_EQ(applicationIdsIn(inSession(u"app-firefox-0123abcd.scope"_s)), QStringList{u"firefox"_s});
    EXPECT_EQ(applicationIdsIn(inSession(u"app-gnome-firefox@autostart.service"_s)).last(), u"firefox"_s);
    EXPECT_EQ(applicationIdsIn(inSession(u"dbus-:1.2-org.gnome.Nautilus@0.service"_s)).last(),
              u"org.gnome.Nautilus"_s);
}

TEST(ControlGroup, ReadsEscapedNames) {
    EXPECT_EQ(applicationIdsIn(inSession(uR"(app-gnome-firefox\x2desr-1234.scope)"_s)).last(),
              u"firefox-esr"_s);
    EXPECT_EQ(applicationIdsIn(inSession(uR"(app-caf\xc3\xa9-1.scope)"_s)), QStringList{u"café"_s});
    // Invalid escapes, bytes that are not valid text, and letters outside the basic plane.
    EXPECT_EQ(applicationIdsIn(uR"(/app-a\x2-1.scope)"_s), QStringList{uR"(a\x2)"_s});
    EXPECT_EQ(applicationIdsIn(uR"(/app-\xff-1.scope)"_s), QStringList{QString(QChar(0xfffd))});
    EXPECT_EQ(applicationIdsIn(u"/app-🦊 €-1.scope"_s), QStringList{u"🦊 €"_s});
}

TEST(ControlGroup, TheInnermostUnitCounts) {
    EXPECT_EQ(applicationIdsIn(inSession(u"app-org.kde.konsole-1.scope/tab(2).scope"_s)), QStringList());
    EXPECT_EQ(applicationIdsIn(inSession(u"app-code-1.scope/child"_s)), QStringList{u"code"_s});
}

TEST(ControlGroup, OtherUnitsNameNone) {
    for (const QString& group :
         {QString(), u"/"_s, u"/init.scope"_s, u"/system.slice/cron.service"_s, u"/app-"_s, u"/app-.scope"_s,
          u"/app-1.scope"_s, u"/app--1.scope"_s, u"/app-@.service"_s, u".scope"_s, u"/.service"_s,
          u"/app-org.gnome.Terminal.slice/vte-spawn-1.scope"_s}) {
        EXPECT_EQ(applicationIdsIn(group), QStringList()) << group.toStdString();
    }
}

TEST(ControlGroup, NamesASnapAndItsProgram) {
    const QString number = u"-01234567-89ab-cdef-0123-456789abcdef"_s;
    EXPECT_EQ(snapIn(inSession(u"snap.firefox.firefox"_s + number + u".scope"_s)),
              (SnapName{u"firefox"_s, u"firefox"_s}));
    EXPECT_EQ(snapIn(inSession(u"snap.gnome-calculator.gnome-calculator"_s + number + u".scope"_s)),
              (SnapName{u"gnome-calculator"_s, u"gnome-calculator"_s}));
    EXPECT_EQ(snapIn(inSession(u"snap.code.url-handler.01234567.scope"_s)),
              (SnapName{u"code"_s, u"url-handler"_s}));
    for (const QString& unit :
         {u"snap.scope"_s, u"snap..scope"_s, u"snap..a.scope"_s, u"snapper.service"_s, QString()}) {
        EXPECT_EQ(snapIn(u'/' + unit), std::nullopt) << unit.toStdString();
    }
}

TEST(ControlGroup, KnowsTheDesktopItself) {
    EXPECT_TRUE(isDesktopComponent(
        u"/user.slice/user-1000.slice/user@1000.service/session.slice/org.gnome.Shell@x11.service"));
    EXPECT_FALSE(isDesktopComponent(inSession(u"app-firefox-1.scope"_s)));
}

} // namespace Fenwhirl
