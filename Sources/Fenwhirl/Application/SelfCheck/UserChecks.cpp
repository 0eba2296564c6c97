#include "Fenwhirl/Application/SelfCheck/UserChecks.h"

#include <filesystem>
#include <system_error>

namespace Fenwhirl {

namespace {

namespace fs = std::filesystem;

constexpr double triedNumber = 62.5;

QString triedText() {
    return QStringLiteral("Été à 92 °C, \"%1\"\n");
}

QByteArray triedData() {
    return QByteArrayLiteral("\x00\xff{}");
}

bool isThere(const std::string& path) {
    std::error_code failure;
    return fs::exists(fs::symlink_status(path, failure));
}

// Makes sure that folders which were missing are missing again, as long as nothing else has come into them.
class MissingFolders {
public:
    explicit MissingFolders(const std::string& file) {
        for (fs::path folder = fs::path(file).parent_path(); !folder.empty() && !isThere(folder.string());
             folder = folder.parent_path()) {
            missing_.push_back(folder);
        }
    }

    ~MissingFolders() {
        std::error_code failure;
        for (const fs::path& folder : missing_) { // the innermost first
            fs::remove(folder, failure);
        }
    }

    MissingFolders(const MissingFolders&) = delete;
    MissingFolders& operator=(const MissingFolders&) = delete;

private:
    std::vector<fs::path> missing_;
};

// The names of what was lost; empty when all came back.
QStringList lostPreferences(const PreferencesStore& store) {
    QStringList lost;
    if (store.text(QStringLiteral("selfCheck.text")) != triedText()) {
        lost.append(QStringLiteral("text"));
    }
    if (store.boolean(QStringLiteral("selfCheck.boolean")) != true) {
        lost.append(QStringLiteral("boolean"));
    }
    if (store.number(QStringLiteral("selfCheck.number")) != triedNumber) {
        lost.append(QStringLiteral("number"));
    }
    if (store.data(QStringLiteral("selfCheck.data")) != triedData()) {
        lost.append(QStringLiteral("data"));
    }
    return lost;
}

CheckResult tryPreferences(const UserCheckServices& services) {
    const auto begin = std::chrono::steady_clock::now();
    {
        const auto store = services.openPreferences();
        store->setText(QStringLiteral("selfCheck.text"), triedText());
        store->setBoolean(QStringLiteral("selfCheck.boolean"), true);
        store->setNumber(QStringLiteral("selfCheck.number"), triedNumber);
        store->setData(QStringLiteral("selfCheck.data"), triedData());
    }
    const QStringList lost = lostPreferences(*services.openPreferences());
    const QStringList keys = {QStringLiteral("selfCheck.text"), QStringLiteral("selfCheck.boolean"),
                              QStringLiteral("selfCheck.number"), QStringLiteral("selfCheck.data")};
    const auto store = services.openPreferences();
    for (const QString& key : keys) {
        store->remove(key);
    }
    QStringList left;
    const auto after = services.openPreferences();
    for (const QString& key : keys) {
        if (after->contains(key)) {
            left.append(key);
        }
    }
    const QString time = millisecondsText(std::chrono::steady_clock::now() - begin);
    if (!lost.isEmpty()) {
        return CheckResult::fail(QStringLiteral("did not come back: ") + lost.join(QStringLiteral(", ")));
    }
    if (!left.isEmpty()) {
        return CheckResult::fail(QStringLiteral("could not be removed: ") + left.join(QStringLiteral(", ")));
    }
    return CheckResult::pass(QStringLiteral("text, boolean, number and data came back, in ") + time);
}

CheckResult checkPreferences(const UserCheckServices& services) {
    CheckResult result = tryPreferences(services);
    services.removePreferences();
    return result;
}

CheckResult tryLoginItem(const UserCheckServices& services) {
    if (!services.setLoginItemEnabled(true)) {
        return CheckResult::fail(QStringLiteral("could not be written to ") +
                                 QString::fromStdString(services.loginItemPath));
    }
    std::error_code failure;
    const auto size = fs::file_size(services.loginItemPath, failure);
    const bool isWritten = !failure && size > 0 && services.isLoginItemEnabled();
    const bool isRemoved = services.setLoginItemEnabled(false) && !services.isLoginItemEnabled() &&
                           !isThere(services.loginItemPath);
    if (!isWritten) {
        return CheckResult::fail(QStringLiteral("what was written is not at ") +
                                 QString::fromStdString(services.loginItemPath));
    }
    if (!isRemoved) {
        return CheckResult::fail(QStringLiteral("could not be removed from ") +
                                 QString::fromStdString(services.loginItemPath));
    }
    return CheckResult::pass(QStringLiteral("%1 bytes written to %2 and removed")
                                 .arg(size)
                                 .arg(QString::fromStdString(services.loginItemPath)));
}

CheckResult checkLoginItem(const UserCheckServices& services) {
    const std::string& place = services.loginItemPath;
    const std::string kept = keptLoginItemPath(place);
    const MissingFolders folders(place);
    std::error_code failure;
    // Renamed, not copied: whatever it is (a link, a file that somebody has edited), it stays the very same.
    const bool wasLeft = isThere(kept);
    const bool wasThere = wasLeft || isThere(place);
    if (!wasLeft && wasThere) {
        fs::rename(place, kept, failure);
        if (failure) {
            return CheckResult::fail(QStringLiteral("the present one cannot be moved aside: ") +
                                     QString::fromStdString(failure.message()));
        }
    }
    CheckResult result = tryLoginItem(services);
    if (!wasThere) {
        return result;
    }
    fs::rename(kept, place, failure);
    if (failure) {
        return CheckResult::fail(
            QStringLiteral("the one that was there is now %1: %2")
                .arg(QString::fromStdString(kept), QString::fromStdString(failure.message())));
    }
    return {result.outcome,
            result.detail + (wasLeft ? QStringLiteral("; one that an earlier check had left is back")
                                     : QStringLiteral("; the one that was there is back"))};
}

CheckResult checkNotification(const UserCheckServices& services) {
    const auto begin = std::chrono::steady_clock::now();
    const Notifier::Delivery delivery = services.notify(
        QStringLiteral("Fenwhirl"), QStringLiteral("Self-check: whoever can read this gets notifications."));
    const QString time = millisecondsText(std::chrono::steady_clock::now() - begin);
    switch (delivery) {
    case Notifier::Delivery::taken:
        return CheckResult::pass(
            QStringLiteral("accepted after %1; whether it is shown, only a person can see").arg(time));
    case Notifier::Delivery::noService:
        return CheckResult::skip(QStringLiteral("nothing shows notifications here"));
    case Notifier::Delivery::refused:
        break;
    }
    return CheckResult::fail(QStringLiteral("refused, or not answered, after ") + time);
}

} // namespace

std::string keptLoginItemPath(const std::string& loginItemPath) {
    // No session starts a file of this name.
    return loginItemPath + ".self-check";
}

std::vector<SelfCheck> userChecks(const UserCheckServices& services) {
    return {{QStringLiteral("preferences"), [services] { return checkPreferences(services); }},
            {QStringLiteral("login item"), [services] { return checkLoginItem(services); }},
            {QStringLiteral("notification"), [services] { return checkNotification(services); }}};
}

} // namespace Fenwhirl
