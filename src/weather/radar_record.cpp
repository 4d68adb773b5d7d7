// SPDX-License-Identifier: MIT
#include "weather/radar_record.h"

#include "core/folders.h"
#include "persist/record_reader.h"
#include "persist/record_writer.h"
#include "weather/weather_settings.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

/// Whether a page file's text has the form of a site's id.
bool isSiteId(const QString& text) {
    return text.size() == 3 && std::all_of(text.begin(), text.end(), [](QChar unit) {
               return unit < QChar(128) && unit.isLetterOrNumber();
           });
}

/// Whether a page file's cache root can be used on this machine.
bool isUsableFolder(const QString& path) {
    return QDir::isAbsolutePath(path) && EnsureFolder(path);
}

/// Reads as many frames as the record really has, whatever `count` says.
std::vector<RadarFrame> readFrames(CRecordReader& record, std::int32_t count) {
    std::vector<RadarFrame> frames;
    for (std::int32_t i = 0; i < count && record.more(); ++i) {
        RadarFrame frame;
        record.string(frame.path);
        record.string(frame.timeText);
        if (frames.size() < kMostFrames) {
            frames.push_back(std::move(frame));
        }
    }
    return frames;
}

} // namespace

void readRadarRecord(CSerialReader& reader, RadarState& state, BasemapLayers& layers) {
    CRecordReader record(reader);
    QString siteId;
    record.string(siteId);
    state.siteId = isSiteId(siteId) ? siteId : QString();
    WeatherSettingsBlock block = encodeWeatherSettings(state, layers);
    record.bytes(block);
    decodeWeatherSettings(block, state, layers);
    std::int32_t count = 0;
    record.value(count);
    state.frames = readFrames(record, count);
    QString cacheFolder;
    record.string(cacheFolder);
    record.end();
    if (isUsableFolder(cacheFolder)) {
        state.cacheFolder = cacheFolder;
    }
}

bool writeRadarRecord(CSerialWriter& writer, const RadarState& state, const BasemapLayers& layers) {
    CRecordWriter record(writer);
    record.string(state.siteId);
    record.bytes(encodeWeatherSettings(state, layers));
    record.value(static_cast<std::int32_t>(state.frames.size()));
    for (const RadarFrame& frame : state.frames) {
        record.string(frame.path);
        record.string(frame.timeText);
    }
    record.string(state.cacheFolder);
    return record.end();
}

} // namespace raincast
