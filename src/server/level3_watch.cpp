// SPDX-License-Identifier: MIT
#include "server/level3_watch.h"

#include "tree/level3_folder.h"

#include <QFile>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>

#include <algorithm>

namespace raincast {

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

constexpr int kPause = 20; // times the last look
constexpr auto kLongestPause = 1min;
constexpr auto kLeastBetweenLooks = 500ms;
// A file that is written in many small pieces does not wake the thread for each of them.
constexpr auto kGather = 10ms;

// Another folder may have come to the path: a mounted one, or where a link leads now.
std::pair<quint64, quint64> identityOf(const QString& folder) {
    struct stat status {};
    return stat(QFile::encodeName(folder).constData(), &status) == 0
               ? std::pair<quint64, quint64>(status.st_dev, status.st_ino)
               : std::pair<quint64, quint64>();
}

} // namespace

Level3Watch::Level3Watch(Level3Folder& folder, const Pace& pace)
    : m_folder(folder), m_pace(pace), m_end(eventfd(0, EFD_CLOEXEC)),
      m_thread([this](const std::stop_token& stop) { run(stop); }) {}

Level3Watch::~Level3Watch() {
    m_thread.request_stop();
    eventfd_write(m_end.get(), 1);
}

void Level3Watch::run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        if (Steady::now() >= m_nextFullLook) {
            lookAtEverything(stop);
        }
        if (Steady::now() >= m_nextSmallLook) {
            lookAgain(stop);
        }
        waitForChange();
        lookAtChanges(stop);
    }
}

void Level3Watch::lookAtEverything(const std::stop_token& stop) {
    const auto begin = Steady::now();
    m_watch.clear();
    m_watched = identityOf(m_folder.folder());
    m_folder.rescan(stop, [this](const QString& folder) { m_watch.add(folder); });
    const auto end = Steady::now();
    // A slow file system is not asked without pause.
    const Steady::duration pause =
        std::min<Steady::duration>(kPause * (end - begin), kLongestPause);
    const Steady::duration unsure = std::max<Steady::duration>(m_pace.unsure, pause);
    m_nextFullLook = end + (m_watch.isSure() ? m_pace.sure : unsure);
}

void Level3Watch::lookAgain(const std::stop_token& stop) {
    m_folder.lookAgain(stop);
    if (m_folder.needsRescan() || identityOf(m_folder.folder()) != m_watched) {
        m_nextFullLook = Steady::now();
    }
    m_nextSmallLook = Steady::now() + m_pace.unfinished;
}

void Level3Watch::lookAtChanges(const std::stop_token& stop) {
    const FolderWatch::Changes changes = m_watch.take();
    m_folder.expect(changes.begun);
    m_folder.lookAt(changes.folders + changes.whole, stop, [this](const QString& folder) {
        m_watch.add(folder);
    });
    if (changes.whole.isEmpty() && !changes.begun.isEmpty()) {
        std::this_thread::sleep_for(kGather);
    }
    if (changes.isLost) {
        m_nextFullLook = std::min(m_nextFullLook, Steady::now() + kLeastBetweenLooks);
    }
    if (!m_watch.isSure()) { // of a folder that is new, perhaps
        m_nextFullLook = std::min(m_nextFullLook, Steady::now() + m_pace.unsure);
    }
}

void Level3Watch::waitForChange() const {
    using Milliseconds = std::chrono::milliseconds;
    const auto until = std::min(m_nextSmallLook, m_nextFullLook);
    const auto wait = std::chrono::ceil<Milliseconds>(until - Steady::now());
    pollfd events[] = {{m_end.get(), POLLIN, 0}, {m_watch.descriptor(), POLLIN, 0}};
    poll(events, std::size(events), static_cast<int>(std::max(wait, Milliseconds(0)).count()));
}

} // namespace raincast
