// What one check of the installation and the machine has found: a line of the table that `--self-check`
// prints.
//
// A plain value; any thread.

#pragma once

#include <QString>

namespace Fenwhirl {

struct CheckResult {
    enum class Outcome { pass, fail, skip };

    Outcome outcome;
    QString detail; // English: a value, a time, or the reason

    [[nodiscard]] static CheckResult pass(const QString& detail) { return {Outcome::pass, detail}; }

    [[nodiscard]] static CheckResult fail(const QString& reason) { return {Outcome::fail, reason}; }

    // It could not be checked here, which says nothing about whether it works.
    [[nodiscard]] static CheckResult skip(const QString& reason) { return {Outcome::skip, reason}; }

    bool operator==(const CheckResult&) const = default;
};

} // namespace Fenwhirl
