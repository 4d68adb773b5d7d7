// SPDX-License-Identifier: MIT
// Whatever a person types where a number, a site, a mark's name or the begin of a replay is asked
// for, and whatever stands for them in a file.
#include "core/leading_number.h"
#include "core/number_in_range.h"
#include "core/replay_clock.h"
#include "core/text.h"
#include "input.h"
#include "map/mark_names.h"
#include "stations/station_filter.h"

#include <cmath>
#include <set>

namespace raincast {
namespace {

void checkNumbers(const QByteArray& bytes, const QString& text) {
    std::string_view left(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    while (const auto number = takeDouble(left)) {
        require(!std::isnan(*number));
    }
    left = {bytes.constData(), static_cast<std::size_t>(bytes.size())};
    while (takeInt(left)) {
    }
    if (const auto number = numberInRange(text, -7, 100)) {
        require(-7 <= *number && *number <= 100);
    }
    bool isNumber = false;
    static_cast<void>(Text::typedNumber(text, &isNumber));
}

void checkReplay(const QString& text) {
    const auto replay = readReplay(text);
    if (!replay) {
        return;
    }
    require(replay->speed >= 1 && replay->speed <= Replay::kMostSpeed);
    require(readReplay(textOf(*replay)) == replay);
    require(text.startsWith(textOf(Replay{replay->begin})));
    require(!folderTextOf(*replay).contains(u'/'));
    if (canReplay(*replay)) {
        const ReplayClock clock(*replay, Clock::real().now());
        require(clock.now() >= replay->begin);
    }
}

void checkNames(const QString& text) {
    std::set<const RadarSite*> sites;
    for (const RadarSite* site : findStations(text, {QStringLiteral("TLX"), text})) {
        require(sites.insert(site).second);
    }
    const QString name = shownMarkName(text);
    require(!name.isEmpty() && name.size() <= 100 && !name.contains(u'\n'));
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes = Input(data, size).rest();
    const QString text = QString::fromUtf8(bytes);
    checkNumbers(bytes, text);
    checkReplay(text);
    checkNames(text);
    return 0;
}
