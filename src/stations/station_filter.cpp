// SPDX-License-Identifier: MIT
#include "stations/station_filter.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace raincast {

namespace {

/// How well a word fits, the best first.
enum Fit : int { isId, isState, beginsId, beginsWord, isPart };

bool beginsAnyWord(QStringView name, QStringView word) {
    for (qsizetype at = name.indexOf(word, 0, Qt::CaseInsensitive); at >= 0;
         at = name.indexOf(word, at + 1, Qt::CaseInsensitive)) {
        if (at == 0 || !name[at - 1].isLetterOrNumber()) {
            return true;
        }
    }
    return false;
}

std::optional<Fit> fitOf(const RadarSite& site, QStringView word) {
    const QStringView name = site.nameText();
    if (site.idText().compare(word, Qt::CaseInsensitive) == 0) {
        return isId;
    }
    const QStringView state = name.left(name.indexOf(u':'));
    if (state.compare(word, Qt::CaseInsensitive) == 0) {
        return isState;
    }
    if (site.idText().startsWith(word, Qt::CaseInsensitive)) {
        return beginsId;
    }
    if (beginsAnyWord(name, word)) {
        return beginsWord;
    }
    return name.contains(word, Qt::CaseInsensitive) ? std::optional(isPart) : std::nullopt;
}

/// The worst fit of several words; none when one is not found.
std::optional<int> fitOfAll(const RadarSite& site, const QStringList& words) {
    int worst = isId;
    for (const QString& word : words) {
        const auto fit = fitOf(site, word);
        if (!fit) {
            return std::nullopt;
        }
        worst = std::max<int>(worst, *fit);
    }
    return worst;
}

} // namespace

std::vector<const RadarSite*> findStations(const QString& typed, const QStringList& recent) {
    const QStringList words = typed.simplified().split(u' ', Qt::SkipEmptyParts);
    std::vector<std::pair<int, const RadarSite*>> found;
    for (const RadarSite& site : radarSites()) {
        const auto fit = words.isEmpty() ? std::nullopt : fitOfAll(site, words);
        if (fit) {
            const auto place = static_cast<int>(recent.indexOf(site.idText().toString()));
            const auto count = static_cast<int>(recent.size());
            found.emplace_back(place >= 0 ? place - count : *fit, &site);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return a.first < b.first;
    });
    std::vector<const RadarSite*> sites;
    std::transform(found.begin(), found.end(), std::back_inserter(sites), [](const auto& each) {
        return each.second;
    });
    return sites;
}

} // namespace raincast
