// SPDX-License-Identifier: MIT
#include "sample/sample_storm.h"

#include "sample/sample_noise.h"

namespace raincast {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kWorldKm = 560;     // storms are born within this distance, east or north
constexpr double kBirthsEvery = 10;  // minutes
constexpr double kLongestLife = 200; // minutes
constexpr double kSupercellsEvery = 100;

/// Each kind of storm is born from a counter: slots of time, numbered since 1970, and some births
/// in each slot. A storm that lives now was born in one of the last few slots.
template<typename Make>
void collect(
    std::vector<SampleStorm>& storms, double minute, double slotMinutes, double reachKm, Make make
) {
    const auto last = static_cast<std::int64_t>(std::floor(minute / slotMinutes));
    const auto first =
        static_cast<std::int64_t>(std::floor((minute - kLongestLife) / slotMinutes)) - 1;
    for (std::int64_t slot = first; slot <= last; ++slot) {
        const SampleStorm storm = make(slot, static_cast<double>(slot) * slotMinutes);
        if (storm.strengthAt(minute) > 0 && storm.placeAt(minute).length() < reachKm) {
            storms.push_back(storm);
        }
    }
}

SampleStorm singleCell(const SampleClimate& climate, std::uint64_t seed, double slotBegin) {
    Dice dice(seed);
    SampleStorm storm;
    storm.seed = seed;
    storm.birthMinute = slotBegin + dice.between(0, kBirthsEvery);
    storm.lifeMinutes = dice.between(45, 110);
    storm.birthPlace = {dice.between(-kWorldKm, kWorldKm), dice.between(-kWorldKm, kWorldKm)};
    const double azimuth = climate.steeringAzimuth + 8 * dice.around();
    storm.motion = climate.steeringSpeed * dice.between(.8, 1.1) * towards(azimuth);
    storm.mostDbz = dice.between(42, 60);
    storm.sizeKm = dice.between(6, 13);
    return storm;
}

/// One after the other upstream of the antenna, slower than the others and to their right: each
/// lives so long that there always is one.
SampleStorm supercell(const SampleClimate& climate, std::uint64_t seed, double slotBegin) {
    Dice dice(seed);
    SampleStorm storm;
    storm.seed = seed;
    storm.rotating = true;
    storm.birthMinute = slotBegin + dice.between(0, 20);
    storm.lifeMinutes = dice.between(170, kLongestLife);
    const double azimuth = climate.steeringAzimuth + dice.between(15, 35);
    storm.motion = climate.steeringSpeed * dice.between(.7, .85) * towards(azimuth);
    // Where it will be in the middle of its life.
    const double middleAzimuth = dice.between(0, 360);
    const PlaneVector middle = dice.between(45, 130) * towards(middleAzimuth);
    storm.birthPlace = middle - storm.lifeMinutes / 2 * storm.motion;
    storm.mostDbz = dice.between(64, 70);
    storm.sizeKm = dice.between(15, 19);
    return storm;
}

SampleStorm
lineCell(const SampleClimate& climate, std::int64_t line, std::uint64_t seed, double slotBegin) {
    Dice dice(seed);
    SampleStorm storm;
    storm.seed = seed;
    storm.birthMinute = slotBegin + dice.between(0, kBirthsEvery);
    storm.lifeMinutes = dice.between(50, 120);
    const PlaneVector ahead = towards(climate.lineAzimuth);
    const double cross = climate.lineAt(line, storm.birthMinute) + 5 * dice.around();
    storm.birthPlace = cross * ahead + dice.between(-kWorldKm, kWorldKm) * ahead.left();
    storm.motion = climate.lineSpeed * ahead + .2 * climate.steeringSpeed * ahead.left();
    storm.mostDbz = dice.between(48, 62);
    storm.sizeKm = dice.between(7, 13);
    return storm;
}

} // namespace

PlaneVector towards(double azimuthDegrees) {
    const double radians = azimuthDegrees / 180 * kPi;
    return {std::sin(radians), std::cos(radians)};
}

double SampleStorm::strengthAt(double minute) const {
    const double age = (minute - birthMinute) / lifeMinutes;
    if (age <= 0 || age >= 1) {
        return 0;
    }
    // Grows faster than it dies.
    return std::sin(kPi * std::pow(age, .8));
}

PlaneVector SampleStorm::inItsFrame(PlaneVector place, double minute) const {
    const PlaneVector ahead = 1 / motion.length() * motion;
    const PlaneVector offset = place - placeAt(minute);
    return {offset.dot(ahead), offset.dot(ahead.left())};
}

PlaneVector SampleStorm::vortexAt(double minute) const {
    // On the right rear flank.
    const PlaneVector ahead = 1 / motion.length() * motion;
    return placeAt(minute) - .45 * sizeKm * ahead - .55 * sizeKm * ahead.left();
}

SampleClimate::SampleClimate(std::uint64_t siteSeed) : seed(siteSeed) {
    Dice dice(siteSeed);
    steeringAzimuth = dice.between(35, 85);
    steeringSpeed = dice.between(.8, 1.1);
    lineAzimuth = steeringAzimuth + dice.between(15, 40);
    lineSpeed = dice.between(.65, .9);
    lineOffsetKm = dice.between(0, kLineDistanceKm);
}

double SampleClimate::lineAt(std::int64_t number, double minute) const {
    return lineOffsetKm + lineSpeed * minute - static_cast<double>(number) * kLineDistanceKm;
}

std::vector<std::int64_t> SampleClimate::linesNear(double reachKm, double minute) const {
    const double travelled = lineOffsetKm + lineSpeed * minute;
    const auto first =
        static_cast<std::int64_t>(std::ceil((travelled - reachKm) / kLineDistanceKm));
    std::vector<std::int64_t> numbers;
    for (std::int64_t i = first; lineAt(i, minute) >= -reachKm; ++i) {
        numbers.push_back(i);
    }
    return numbers;
}

std::vector<SampleStorm> stormsAt(const SampleClimate& climate, double minute, double reachKm) {
    enum : std::int64_t { singleKind = 0, supercellKind = 5, lineKind = 6 };
    std::vector<SampleStorm> storms;
    const auto seedOf = [&](std::int64_t kind, std::int64_t slot) {
        return mixed(mixed(climate.seed, kind), slot);
    };
    collect(storms, minute, kSupercellsEvery, reachKm, [&](std::int64_t slot, double begin) {
        return supercell(climate, seedOf(supercellKind, slot), begin);
    });
    for (std::int64_t kind = singleKind; kind < supercellKind; ++kind) {
        collect(storms, minute, kBirthsEvery, reachKm, [&](std::int64_t slot, double begin) {
            return singleCell(climate, seedOf(kind, slot), begin);
        });
    }
    for (const std::int64_t line : climate.linesNear(reachKm + 200, minute)) {
        for (std::int64_t twin = 0; twin < 6; ++twin) {
            collect(storms, minute, kBirthsEvery, reachKm, [&](std::int64_t slot, double begin) {
                return lineCell(climate, line, mixed(seedOf(lineKind + twin, slot), line), begin);
            });
        }
    }
    return storms;
}

} // namespace raincast
