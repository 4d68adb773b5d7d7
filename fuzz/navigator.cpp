// SPDX-License-Identifier: MIT
// Whatever a navigator answers and leaves in the shared file: its answer is the status, a file that
// is too short is found out, and the floats that are read are finite.
#include "position/feed_qvapi_to_gps_position.h"
#include "position/navigator/navigator_link.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace raincast {
namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

class Answering : public NavigatorPort::Window {
public:
    bool exists() override { return true; }
    std::optional<std::uint32_t> send(const NavigatorPort::Message& /*message*/) override {
        return answer;
    }
    void post(const NavigatorPort::Message& /*message*/) override {}

    std::uint32_t answer = 0;
};

class Free : public NavigatorPort::Mutex {
public:
    bool wait() override { return true; }
    void release() override {}
};

void check(NavigatorLink& link, const QByteArray& file, std::uint32_t answer) {
    const auto position = getNavigatorPosition(link);
    const NavigatorStatus status = position ? kNavigatorSuccess : position.error();
    if (answer != kNavigatorSuccess) {
        require(status == answer);
        return;
    }
    require(status == (file.size() >= 64 ? kNavigatorSuccess : kNavigatorFileFailed));
    if (position) {
        for (const float value :
             {position->course, position->speed, position->altitude, position->extra1,
              position->extra2}) {
            require(std::isfinite(value));
        }
    }
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    if (size == 0) {
        return 0;
    }
    NavigatorLink link;
    auto window = std::make_unique<Answering>();
    window->answer = data[0] < 128 ? 0 : data[0] % 32;
    const std::uint32_t answer = window->answer;
    link.window = std::move(window);
    link.mutex = std::make_unique<Free>();
    link.file = folder.filePath(QStringLiteral("QVAPI2.dat"));

    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size) - 1);
    QFile file(link.file);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    check(link, bytes, answer);
    return 0;
}
