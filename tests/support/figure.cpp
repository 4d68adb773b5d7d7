// SPDX-License-Identifier: MIT
#include "support/figure.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

namespace raincast {

namespace {

/// In the C locale, whatever the user's is.
std::string text(double value, int digits = 6) {
    return QString::number(value, 'g', digits).toStdString();
}

/// For people: 100,000 and the like are not written as powers of ten.
std::string shortText(double value) {
    return text(value, value >= 1000 ? 6 : 3);
}

std::string withUnit(double value, const std::string& unit) {
    return shortText(value) + " " + unit;
}

void tell(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout); // others may write between
}

const char* wordOf(AimOf aimOf) {
    switch (aimOf) {
    case AimOf::nothing:
        return "nothing";
    case AimOf::ratio:
        return "ratio";
    case AimOf::own:
        return "own";
    case AimOf::difference:
        return "difference";
    }
    return "";
}

void append(std::initializer_list<std::string> words) {
    const char* name = std::getenv("RAINCAST_FIGURES");
    if (name == nullptr || *name == '\0') {
        return;
    }
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : "\t") + word;
    }
    line += '\n';
    std::FILE* file = std::fopen(name, "a");
    if (file == nullptr || std::fputs(line.c_str(), file) < 0 || std::fclose(file) != 0) {
        std::fprintf(stderr, "Cannot write to %s.\n", name);
        std::exit(1);
    }
}

std::string aimText(const Figure& figure) {
    const char* const bound = figure.better == Better::lower ? "at most" : "at least";
    const std::string value = bound + (" " + shortText(figure.aim));
    switch (figure.aimOf) {
    case AimOf::nothing:
        return {};
    case AimOf::ratio:
        return " (aim: " + value + " times)";
    case AimOf::own:
        return " (aim: " + value + " " + figure.unit + ")";
    case AimOf::difference:
        return " (aim: " + value + " " + figure.unit + " more)";
    }
    return {};
}

} // namespace

Figure Figure::of(const Ratio& ratio, const std::string& what, const std::string& peerName) {
    return {
        .what = what,
        .unit = "ms",
        .own = ratio.firstMilliseconds,
        .peerName = peerName,
        .peer = ratio.secondMilliseconds,
        .ratio = ratio.median};
}

Figure Figure::of(
    double own, double peer, const std::string& unit, const std::string& what,
    const std::string& peerName
) {
    return {
        .what = what,
        .unit = unit,
        .own = own,
        .peerName = peerName,
        .peer = peer,
        .ratio = peer > 0 ? own / peer : 0};
}

Figure Figure::withAim(AimOf of, double value) const {
    Figure figure = *this;
    figure.aimOf = of;
    figure.aim = value;
    return figure;
}

void print(const Figure& figure) {
    std::string line = figure.what + ": " + withUnit(figure.own, figure.unit);
    if (!figure.peerName.empty()) {
        line += ", " + figure.peerName + " " + withUnit(figure.peer, figure.unit) + ": " +
                shortText(figure.ratio) + " times";
    }
    tell(line + aimText(figure));
    append(
        {"figure", figure.what, figure.unit, text(figure.own), figure.peerName, text(figure.peer),
         text(figure.ratio), wordOf(figure.aimOf), text(figure.aim),
         figure.better == Better::lower ? "lower" : "higher"}
    );
}

void print(const CurvePoint& point) {
    std::string line = point.curve + ", " + shortText(point.x) + " " + point.axis + ": " +
                       withUnit(point.own, point.unit);
    if (!point.peerName.empty()) {
        line += ", " + point.peerName + " " + withUnit(point.peer, point.unit);
    }
    tell(line);
    append(
        {"point", point.curve, point.axis, text(point.x), point.unit, text(point.own),
         point.peerName, text(point.peer)}
    );
}

} // namespace raincast
