#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"

namespace Fenwhirl {

namespace {

constexpr int nameWidth = 22;

QString onOneLine(QString text) {
    for (QChar& character : text) {
        switch (character.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format: // turns the direction of a text, say
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            character = u'?';
            break;
        default:
            break;
        }
    }
    return text;
}

QString word(CheckResult::Outcome outcome) {
    switch (outcome) {
    case CheckResult::Outcome::pass:
        return QStringLiteral("pass");
    case CheckResult::Outcome::fail:
        return QStringLiteral("FAIL");
    case CheckResult::Outcome::skip:
        break;
    }
    return QStringLiteral("skip");
}

void count(SelfCheckCounts& counts, CheckResult::Outcome outcome) {
    switch (outcome) {
    case CheckResult::Outcome::pass:
        ++counts.passed;
        break;
    case CheckResult::Outcome::fail:
        ++counts.failed;
        break;
    case CheckResult::Outcome::skip:
        ++counts.skipped;
        break;
    }
}

} // namespace

SelfCheckCounts runSelfChecks(const std::vector<SelfCheck>& checks,
                              const std::function<bool(const QString& line)>& print,
                              const std::function<bool()>& shouldEnd) {
    SelfCheckCounts counts;
    for (const SelfCheck& check : checks) {
        if (shouldEnd()) {
            counts.isComplete = false;
            return counts;
        }
        const CheckResult result = check.run();
        count(counts, result.outcome);
        if (!print(selfCheckLine(check.name, result))) {
            counts.isComplete = false;
            return counts;
        }
    }
    return counts;
}

QString selfCheckLine(const QString& name, const CheckResult& result) {
    return word(result.outcome) + QStringLiteral("  ") + name.leftJustified(nameWidth) +
           QStringLiteral("  ") + onOneLine(result.detail);
}

QString selfCheckSummary(const SelfCheckCounts& counts) {
    const QString text = QStringLiteral("%1 passed, %2 failed, %3 skipped")
                             .arg(counts.passed)
                             .arg(counts.failed)
                             .arg(counts.skipped);
    return counts.isComplete ? text : text + QStringLiteral("; interrupted before the end");
}

QString millisecondsText(std::chrono::duration<double, std::milli> time) {
    return QString::number(time.count(), 'f', 2) + QStringLiteral(" ms");
}

} // namespace Fenwhirl
