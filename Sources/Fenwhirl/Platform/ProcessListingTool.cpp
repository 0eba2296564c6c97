#include "Fenwhirl/Platform/ProcessListingTool.h"

#include <QProcess>
#include <QProcessEnvironment>

void Cancellation::cancel() {
    {
        const std::lock_guard lock(mutex_);
        cancelled_ = true;
    }
    changed_.notify_all();
}

bool Cancellation::isCancelled() const {
    const std::lock_guard lock(mutex_);
    return cancelled_;
}

bool Cancellation::waitFor(std::chrono::milliseconds duration) const {
    std::unique_lock lock(mutex_);
    return !changed_.wait_for(lock, duration, [this] { return cancelled_; });
}

std::optional<QByteArray> runListingTool(const std::string& tool, const std::vector<std::string>& arguments,
                                         std::chrono::milliseconds limit, const Cancellation& cancellation) {
    QStringList argumentList;
    for (const std::string& argument : arguments) {
        argumentList.append(QString::fromStdString(argument));
    }
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C"));

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    const auto deadline = std::chrono::steady_clock::now() + limit;
    process.start(QString::fromStdString(tool), argumentList, QIODevice::ReadOnly);
    constexpr int lookEveryMilliseconds = 50;
    while (process.state() != QProcess::NotRunning) {
        if (cancellation.isCancelled() || std::chrono::steady_clock::now() > deadline) {
            process.kill();
            process.waitForFinished(lookEveryMilliseconds);
            return std::nullopt;
        }
        (void)process.waitForFinished(lookEveryMilliseconds);
    }
    if (process.error() == QProcess::FailedToStart) {
        return std::nullopt;
    }
    return process.readAllStandardOutput();
}
