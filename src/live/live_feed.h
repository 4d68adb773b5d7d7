// SPDX-License-Identifier: MIT
#pragma once

#include "live/live_store.h"
#include "provider/provider.h"

#include <map>

namespace raincast {

/// One product of a site at one provider: the volumes that are known, and those whose bytes are in
/// the store. For one thread at a time.
class LiveFeed {
public:
    /// Both are borrowed and must outlive the answers under way.
    LiveFeed(Provider& provider, LiveStore& store, LiveName name);
    LiveFeed(const LiveFeed&) = delete;
    LiveFeed& operator=(const LiveFeed&) = delete;

    /// Takes a volume that the store has.
    void take(const LiveObject& kept);

    /// Asks the provider what there is, back to `since`, if that is due.
    void list(FileTime since);
    /// Asks for volumes between the known ones, too, whatever is due; once in ten minutes.
    void listAll(FileTime since);
    [[nodiscard]] bool isListing() const { return m_isListing; }
    [[nodiscard]] bool isDue() const;
    [[nodiscard]] FileTime due() const { return m_due; }
    /// When the provider answered last; 0: never.
    [[nodiscard]] FileTime listedAt() const { return m_listedAt; }
    /// Whether the provider did not answer when it was asked last.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

    /// The newest volume's time, 0 for none.
    [[nodiscard]] FileTime newest() const;
    /// The minutes of all volumes.
    [[nodiscard]] std::vector<FileTime> minutes() const;
    [[nodiscard]] bool has(FileTime minute) const { return m_volumes.contains(minute); }

    /// How it stands with the bytes of a volume.
    enum class Bytes {
        none,     ///< there is no such volume, or its bytes cannot be had now
        wanted,   ///< fetch() them
        underWay, ///< they will come or fail
        there,
    };
    [[nodiscard]] Bytes bytesOf(FileTime minute) const;
    void fetch(FileTime minute);

    /// The object whose bytes are in the store; nothing where none are.
    [[nodiscard]] std::optional<LiveObject> kept(FileTime minute) const;
    /// Whether the bytes may be replaced by others.
    [[nodiscard]] bool mayChange(FileTime minute) const;
    /// What is wrong with bytes in the store.
    enum class Loss {
        gone,    ///< they may be fetched again
        useless, ///< but not soon: they would be the same
    };
    void lose(FileTime minute, Loss loss);

    /// Forgets what is older. The store keeps it as long as somebody may want it.
    void forget(FileTime oldest);

    [[nodiscard]] Provider& provider() const { return m_provider; }
    [[nodiscard]] const LiveName& name() const { return m_name; }

private:
    struct Volume {
        LiveObject object;                ///< as the provider has it
        std::optional<QByteArray> kept{}; ///< the tag of the bytes in the store
        bool isFetching = false;
        FileTime checkedAt = 0;
        FileTime notBefore = 0; ///< it is not worth asking sooner
    };

    void begin(FileTime since, bool all);
    void find(std::vector<LiveObject> objects);
    void end(LiveOutcome outcome, FileTime newestBefore);
    void takeBytes(FileTime minute, LiveOutcome outcome, std::optional<LiveObject> object);
    [[nodiscard]] bool isNewest(FileTime minute) const;

    Provider& m_provider;
    LiveStore& m_store;
    LiveName m_name;
    std::map<FileTime, Volume> m_volumes; ///< by minute
    FileTime m_oldest = 0;
    FileTime m_due = 0;
    FileTime m_listedAt = 0;
    FileTime m_listedAllAt = 0;
    int m_misses = 0;
    bool m_isListing = false;
    bool m_hasFailed = false;
};

} // namespace raincast
