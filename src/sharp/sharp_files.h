// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "core/retry_wait.h"
#include "net/http_transfer.h"
#include "net/servers.h"
#include "sharp/sharp_picture.h"
#include "sharp/sharp_servers.h"
#include "sharp/sharp_source.h"

#include <QDateTime>

#include <array>
#include <functional>
#include <memory>

namespace raincast {

class Downloads;

/// Reads sharp pictures from the cache and fetches them into it, without a word where that fails:
/// the described pictures do.
///
/// A cached sharp picture is that of the described one beside it while both files have the same
/// time of last change. A server that answers that a picture is not there (404), or has one of
/// another size, is not asked for it again by these downloads; nor for any, once it is plain that
/// it has none. A server that cannot be reached is left alone for a while. All calls come from the
/// event loop; the end of the object cancels what runs.
class SharpFiles {
public:
    using Looked = std::function<void(SharpPicture)>;
    enum class Outcome {
        came,
        absent, ///< the server has none
        failed, ///< the network, the server or the disk
    };
    using Fetched = std::function<void(Outcome, SharpPicture)>;

    /// The downloads and what is known of the servers are borrowed.
    SharpFiles(Downloads& downloads, RadarServers servers, SharpServers& known);

    /// Reads the cached picture of a detail or, without one, of a smaller one above 1.
    void look(const SharpSource& source, int detail, Looked done);

    /// Fetches a picture of a detail or, where the server has none, of a smaller one above `above`.
    void fetch(const SharpSource& source, int detail, int above, Fetched done);

    /// Whether it is the time to fetch from a server: not for a while after it could not be
    /// reached.
    [[nodiscard]] bool mayFetchFrom(SharpSource::Server server) const;
    /// Ends that wait: the network is known to be there.
    void tryAgain() { m_waits = {}; }

    /// How many pictures of a kind to ask for at a time. While nobody knows whether the server has
    /// any, one.
    [[nodiscard]] int mostAtATime(const SharpSource& source, int detail) const;

    [[nodiscard]] const RadarServers& servers() const { return m_servers; }

private:
    static constexpr int kMostAtATime = 3;

    struct Wanted {
        SharpSource source;
        QDateTime described; ///< when the described file was last changed
        int detail;
        int above;
        Fetched done;
    };

    [[nodiscard]] CHttpTransfer& transfer(SharpSource::Server server);
    void fetchNext(Wanted wanted);
    void download(const Wanted& wanted);
    void read(const Wanted& wanted);
    void noteAbsent(const Wanted& wanted);
    void ended(const Wanted& wanted, Outcome outcome, SharpPicture picture);
    void settleWaits();

    Downloads& m_downloads;
    RadarServers m_servers;
    std::array<std::unique_ptr<CHttpTransfer>, 2> m_transfers; ///< while something is fetched
    std::array<RetryWait, 2> m_waits;                          ///< by server
    SharpServers& m_known;
    int m_running = 0;
    Background m_background;
};

} // namespace raincast
