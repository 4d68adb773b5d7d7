// SPDX-License-Identifier: MIT
#pragma once

#include "position/source/position_source.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace raincast {

/// Keeps everything that a source tells.
class TestSink : public PositionSource::Sink {
public:
    void received(std::string_view bytes) override {
        all += bytes;
        ++reads;
        if (whenReceived) {
            whenReceived();
        }
    }
    void broken(const QString& why) override { failures.push_back(why.toStdString()); }
    void finished() override { ++finishes; }

    std::string all;
    int reads = 0;
    std::vector<std::string> failures;
    int finishes = 0;
    std::function<void()> whenReceived;
};

} // namespace raincast
