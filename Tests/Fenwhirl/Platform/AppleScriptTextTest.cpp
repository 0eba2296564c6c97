#include "Fenwhirl/Platform/AppleScriptText.h"

#include <gtest/gtest.h>

TEST(NotificationStatement, NamesMessageAndTitle) {
    EXPECT_EQ(
        notificationStatement(QStringLiteral("Fenwhirl"), QStringLiteral("Ton Mac chauffe : 93 degrés.")),
        QStringLiteral("display notification \"Ton Mac chauffe : 93 degrés.\" with title \"Fenwhirl\""));
}

TEST(NotificationStatement, QuotesBecomeApostrophesAndBackslashesBlanks) {
    EXPECT_EQ(
        notificationStatement(QStringLiteral("\\\"a\\"), QStringLiteral("\"; do shell script \"id\\\"")),
        QStringLiteral("display notification \"'; do shell script 'id '\" with title \" 'a \""));
}
