// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "core/retry_wait.h"
#include "net/http_transfer.h"
#include "net/servers.h"
#include "sharp/sharp_picture.h"

#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <set>

namespace raincast {

class Downloads;

/// What a sharp picture is of: a picture of the described size that the cache has.
struct SharpSource {
    enum class Server { radar, basemap };
    enum class Use {
        frame, ///< of a loop: has one byte a pixel, may be packed
        layer,
    };

    QString path; ///< on the server, of the described picture
    QString file; ///< in the cache, of the described picture
    FileKind kind;
    Server server = Server::radar;
    Use use = Use::frame;
};

/// Reads sharp pictures from the cache and fetches them into it, without a word where that fails:
/// the described pictures do.
///
/// A cached sharp picture is that of the described one beside it while both files have the same
/// time of last change. A server that answers that a picture is not there (404), or has one of
/// another size, is not asked for it again by these downloads; nor for any, if that holds for the
/// first two that it is asked for. What fails otherwise is tried again after a wait. All calls come
/// from the event loop; the end of the object cancels what runs.
class SharpFiles {
public:
    using Looked = std::function<void(SharpPicture)>;
    enum class Outcome {
        came,
        absent, ///< the server has none
        failed, ///< the network, the server or the disk
    };
    using Fetched = std::function<void(Outcome, SharpPicture)>;

    /// The downloads are borrowed.
    SharpFiles(Downloads& downloads, RadarServers servers);

    /// Reads the cached picture of a detail or, without one, of a smaller one above 1.
    void look(const SharpSource& source, int detail, Looked done);

    /// Fetches a picture of a detail or, where the server has none, of a smaller one above `above`.
    void fetch(const SharpSource& source, int detail, int above, Fetched done);

    /// Whether it is the time to fetch: not for a while after a failure.
    [[nodiscard]] bool mayFetch() const;
    /// Ends that wait: the network is known to be there.
    void tryAgain() { m_retry = {}; }

    /// How many pictures to ask for at a time. While nobody knows whether a server has any, one.
    [[nodiscard]] int mostAtATime() const { return m_haveSome.empty() ? 1 : kMostAtATime; }

    [[nodiscard]] const RadarServers& servers() const { return m_servers; }

private:
    static constexpr int kMostAtATime = 3;

    struct Wanted {
        SharpSource source;
        int detail;
        int above;
        Fetched done;
    };

    [[nodiscard]] CHttpTransfer& transfer(SharpSource::Server server);
    void fetchNext(Wanted wanted);
    void read(Wanted wanted);
    void noteAbsent(const Wanted& wanted);
    void ended(const Wanted& wanted, Outcome outcome, SharpPicture picture);

    Downloads& m_downloads;
    RadarServers m_servers;
    std::array<std::unique_ptr<CHttpTransfer>, 2> m_transfers; ///< while something is fetched
    std::set<QString> m_haveSome; ///< server and folder of sharp pictures
    std::set<QString> m_lackOne;
    RetryWait m_retry;
    int m_running = 0;
    Background m_background;
};

} // namespace raincast
