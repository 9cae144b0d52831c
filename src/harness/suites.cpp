#include "harness/suites.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace {

// The rules and times as the suites' authors published them; BS2830's rule is the one found in
// public engine code, its primary source being unknown. GS2930 and IQ5 are known by name only: no
// positions, time or rule of theirs could be found, so they get no estimate.
constexpr Suite SUITES[] = {
    {"LCT II", {"lct2", "lctii"}, "LCTII.", 35, 600, EloRule::LCT_POINTS, 1900},
    {"BT2450", {"bt2450", nullptr}, "BT2450.", 30, 900, EloRule::BT_TIME, 2450},
    {"BT2630", {"bt2630", nullptr}, nullptr, 30, 900, EloRule::BT_TIME, 2630},
    {"BS2830", {"bs2830", nullptr}, "BS2830-", 27, 900, EloRule::BS_TIME, 2830},
    {"GS2930", {"gs2930", nullptr}, nullptr, 0, 0, EloRule::NONE, 0},
    {"IQ5", {"iq5", nullptr}, nullptr, 0, 0, EloRule::NONE, 0},
};

// "/suites/BT-2450.epd" -> "bt2450"; both separators, as files may come from either system.
std::string normalisedName(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
    const size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.erase(dot);
    std::string result;
    for (char c : name)
        if (c != '-' && c != '_' && c != ' ')
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

// LCT II points by whole seconds: 0-9 s 30, 10-29 25, 30-89 20, 90-179 15, 180-389 10, 390-600 5.
int lctPoints(const PositionResult& p, double limit) {
    if (p.outcome != PositionOutcome::SOLVED) return 0;
    const double seconds = std::floor(p.ms / 1000.0);
    if (seconds > limit) return 0;
    constexpr struct {
        double below;
        int points;
    } BANDS[] = {{10, 30}, {30, 25}, {90, 20}, {180, 15}, {390, 10}};
    for (const auto& band : BANDS)
        if (seconds < band.below) return band.points;
    return 5;
}

// A time in seconds as the BT and BS rules count it: found and kept within the limit, else the limit.
double cappedSeconds(const PositionResult& p, double limit) {
    return p.outcome == PositionOutcome::SOLVED ? std::min(p.ms / 1000.0, limit) : limit;
}

double totalCappedSeconds(const Suite& suite, const SuiteResults& results) {
    double sum = 0;
    for (const PositionResult& p : results.positions) sum += cappedSeconds(p, suite.seconds);
    return sum;
}

std::string format(const char* pattern, double a, double b = 0, double c = 0) {
    char text[200];
    std::snprintf(text, sizeof text, pattern, a, b, c);
    return text;
}

}  // namespace

std::span<const Suite> suites() {
    return SUITES;
}

const Suite* findSuite(const std::string& path, std::span<const std::string> ids) {
    const std::string name = normalisedName(path);
    for (const Suite& suite : SUITES)
        for (const char* fileName : suite.fileNames)
            if (fileName && name == fileName) return &suite;
    if (ids.empty()) return nullptr;
    for (const Suite& suite : SUITES) {
        if (!suite.idPrefix) continue;
        const std::string prefix = suite.idPrefix;
        if (std::all_of(ids.begin(), ids.end(),
                        [&](const std::string& id) { return id.starts_with(prefix); }))
            return &suite;
    }
    return nullptr;
}

std::optional<double> calcElo(const Suite& suite, const SuiteResults& results) {
    if (suite.rule == EloRule::NONE || static_cast<int>(results.positions.size()) != suite.positions)
        return {};
    switch (suite.rule) {
        case EloRule::LCT_POINTS: {
            int points = 0;
            for (const PositionResult& p : results.positions) points += lctPoints(p, suite.seconds);
            return suite.base + points;
        }
        case EloRule::BT_TIME:
            return suite.base - totalCappedSeconds(suite, results) / 30;
        case EloRule::BS_TIME: {
            const double minutes = totalCappedSeconds(suite, results) / 60;
            return suite.base - minutes / 1.5 - minutes * minutes / (22 * 22);
        }
        case EloRule::NONE:
            break;
    }
    return {};
}

std::string eloReport(const Suite& suite, const SuiteResults& results) {
    std::string text = suite.name;
    const std::optional<double> elo = calcElo(suite, results);
    if (suite.rule == EloRule::NONE) {
        text += ": no published scoring rule is available for this suite, so no Elo estimate\n";
        return text;
    }
    if (!elo) {
        text += format(": no Elo estimate: the suite has %.0f positions, the file %.0f\n", suite.positions,
                       static_cast<double>(results.positions.size()));
        return text;
    }
    switch (suite.rule) {
        case EloRule::LCT_POINTS:
            text += format(": Elo %.0f = %.0f + %.0f points\n", *elo, suite.base, *elo - suite.base);
            break;
        case EloRule::BT_TIME:
            text += format(": Elo %.0f = %.0f - %.1f s / 30\n", *elo, suite.base,
                           totalCappedSeconds(suite, results));
            break;
        default:
            text += format(": Elo %.1f = %.0f - T/1.5 - T^2/484 with T = %.1f min", *elo, suite.base,
                           totalCappedSeconds(suite, results) / 60);
            text += " (rule from public engine code; its primary source is unknown)\n";
            break;
    }
    if (results.seconds != suite.seconds)
        text += format(
            "note: run at %g s per position; the rule assumes %g s, so the estimate is not comparable\n",
            results.seconds, suite.seconds);
    return text;
}
