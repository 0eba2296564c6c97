#include "Fenwhirl/Application/ProgramMenus.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Views/PageLabels.h"

#include <gtest/gtest.h>
#include <optional>
#include <set>

namespace Fenwhirl {

namespace {

using Kind = MenuItem::Kind;

class ProgramMenus : public testing::Test {
protected:
    void TearDown() override { Localizer::setLanguage(AppLanguage::automatic); }

    // The first item with this key, regardless of its Option modifier.
    static const MenuItem* withKey(const QList<Menu>& menus, const QString& key) {
        for (const Menu& menu : menus) {
            for (const MenuItem& item : menu.items) {
                if (item.key == key) {
                    return &item;
                }
            }
        }
        return nullptr;
    }

    std::optional<Page> shown;
    int reports = 0;
    const MenuCommands commands{.showPage = [this](Page page) { shown = page; },
                                .createReport = [this] { ++reports; }};
};

} // namespace

TEST_F(ProgramMenus, AreThoseOfEveryProgramInTheirOrder) {
    Localizer::setLanguage(AppLanguage::de);
    const QList<Menu> menus = programMenus(commands);
    QStringList titles;
    for (const Menu& menu : menus) {
        titles.append(menu.title);
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral("Fenwhirl"), QStringLiteral("Bearbeiten"),
                                   QStringLiteral("Darstellung"), QStringLiteral("Fenster"),
                                   QStringLiteral("Hilfe")}));
    EXPECT_EQ(menus[0].role, Menu::Role::application);
    EXPECT_EQ(menus[3].role, Menu::Role::windows);
    EXPECT_EQ(menus[4].role, Menu::Role::help);
    EXPECT_EQ(menus[0].items.constFirst().title, QStringLiteral("Über Fenwhirl"));
    EXPECT_EQ(menus[0].items.constLast().kind, Kind::quit);
}

TEST_F(ProgramMenus, AnswerToTheKeysOfEveryProgram) {
    const QList<Menu> menus = programMenus(commands);
    EXPECT_EQ(withKey(menus, QStringLiteral("c"))->kind, Kind::copy);
    EXPECT_EQ(withKey(menus, QStringLiteral("x"))->kind, Kind::cut);
    EXPECT_EQ(withKey(menus, QStringLiteral("v"))->kind, Kind::paste);
    EXPECT_EQ(withKey(menus, QStringLiteral("a"))->kind, Kind::selectAll);
    EXPECT_EQ(withKey(menus, QStringLiteral("m"))->kind, Kind::minimize);
    EXPECT_EQ(withKey(menus, QStringLiteral("w"))->kind, Kind::close);
    EXPECT_EQ(withKey(menus, QStringLiteral("q"))->kind, Kind::quit);
    withKey(menus, QStringLiteral(","))->chosen();
    EXPECT_EQ(shown, Page::settings);
}

TEST_F(ProgramMenus, LeadToEachPageByItsNumber) {
    const QList<Menu> menus = programMenus(commands);
    ASSERT_EQ(menus[2].items.size(), static_cast<qsizetype>(allPages.size()));
    for (std::size_t i = 0; i < allPages.size(); ++i) {
        const MenuItem* item = withKey(menus, QString::number(i + 1));
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->title, title(allPages.at(i)));
        item->chosen();
        EXPECT_EQ(shown, allPages.at(i));
    }
}

TEST_F(ProgramMenus, OfferTheReportAsHelp) {
    programMenus(commands)[4].items.at(0).chosen();
    EXPECT_EQ(reports, 1);
}

TEST_F(ProgramMenus, HaveATitleForEveryItemInEveryLanguage) {
    for (const AppLanguage language :
         {AppLanguage::fr, AppLanguage::en, AppLanguage::srCyrl, AppLanguage::ru}) {
        Localizer::setLanguage(language);
        for (const Menu& menu : programMenus(commands)) {
            EXPECT_FALSE(menu.title.isEmpty());
            std::set<QString> titles;
            for (const MenuItem& item : menu.items) {
                if (item.kind != Kind::separator) {
                    EXPECT_FALSE(item.title.isEmpty());
                    EXPECT_FALSE(item.title.contains(u'%'));
                    EXPECT_TRUE(titles.insert(item.title).second) << item.title.toStdString();
                }
            }
        }
    }
}

} // namespace Fenwhirl
