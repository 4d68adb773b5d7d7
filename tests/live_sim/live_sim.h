// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "support/fault_server.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

namespace raincast {

/// One provider that a test may break.
class SimProvider {
public:
    virtual ~SimProvider() = default;

    /// The address of its root, without a slash at its end.
    [[nodiscard]] QByteArray url() const { return "http://" + m_server.host().toUtf8(); }
    /// How often it was asked, altogether and for targets that contain a text.
    [[nodiscard]] int count(const QByteArray& part = {}) const;
    /// The targets of all requests in their order.
    [[nodiscard]] std::vector<QByteArray> targets() const;
    /// The heads of all requests.
    [[nodiscard]] std::vector<QByteArray> heads() const { return m_server.requests(); }

    /// From now on every request whose target contains a text gets this answer. Nothing: as usual.
    void breakBy(std::optional<FaultServer::Answer> answer, const QByteArray& part = {});
    /// Each answer begins so much later.
    void delay(std::chrono::milliseconds time);

protected:
    SimProvider();
    /// Called under the mutex, in one of the server's threads. Targets are as they were sent.
    [[nodiscard]] virtual FaultServer::Answer
    answer(const QByteArray& target, const QByteArray& head) = 0;

    mutable std::mutex m_mutex; ///< of all that answers are made of

private:
    FaultServer::Answer choose(const QByteArray& head);

    std::optional<FaultServer::Answer> m_fault;
    QByteArray m_faultPart;
    std::chrono::milliseconds m_delay{0};

protected:
    FaultServer m_server; ///< last: its threads use the rest
};

/// A bucket that lists its objects as ListObjectsV2 does, and refuses who sends an Origin.
class SimBucket : public SimProvider {
public:
    SimBucket() = default;

    /// Puts an object there, or in the place of another one.
    void put(const std::string& key, const QByteArray& bytes, FileTime modified = 0);
    void remove(const std::string& key);
    /// The tags of its lists have plain quotes; otherwise escaped ones.
    void useRawTags(bool raw);
    void setPageSize(int size);

private:
    struct Object {
        QByteArray bytes;
        QByteArray etag;
        FileTime modified;
    };

    FaultServer::Answer answer(const QByteArray& target, const QByteArray& head) override;
    [[nodiscard]] QByteArray listing(const QByteArray& query) const;

    std::map<std::string, Object> m_objects;
    bool m_rawTags = false;
    int m_pageSize = 1000;
};

/// Folders of rings, with sn.last in each.
class SimRing : public SimProvider {
public:
    /// How its pages write times.
    enum class Form { table, isoTable, lines };

    SimRing() = default;

    /// Puts a file under a number of a ring, "p94r0" of "ktlx", and makes it sn.last unless told
    /// not to.
    void
    put(const QByteArray& product, const QByteArray& site, int number, FileTime modified,
        const QByteArray& bytes, bool isLast = true);
    void setForm(Form form);
    /// Whether If-Modified-Since has an effect.
    void honourConditions(bool honour);

private:
    struct File {
        FileTime modified;
        QByteArray bytes;
    };

    FaultServer::Answer answer(const QByteArray& target, const QByteArray& head) override;
    [[nodiscard]] QByteArray page(const std::map<QByteArray, File>& files) const;

    std::map<QByteArray, std::map<QByteArray, File>> m_folders;
    Form m_form = Form::table;
    bool m_honoursConditions = true;
};

/// Both who tell warnings: /alerts/active and /geojson/sbw.geojson.
class SimAlerts : public SimProvider {
public:
    SimAlerts() = default;

    void setAlerts(const QByteArray& json);
    void setStormWarnings(const QByteArray& json);

private:
    FaultServer::Answer answer(const QByteArray& target, const QByteArray& head) override;

    QByteArray m_alerts = R"({"type":"FeatureCollection","features":[]})";
    QByteArray m_storms = R"({"type":"FeatureCollection","features":[]})";
};

/// Stand-ins for all providers of live weather, each at a port of its own.
struct LiveSim {
    SimBucket bucket;
    SimRing ring;
    SimAlerts alerts;
};

/// The value of a header in a request's head; empty where it is absent.
[[nodiscard]] QByteArray headerIn(const QByteArray& head, const QByteArray& name);

/// Error answers as the providers give them.
namespace sim_errors {

[[nodiscard]] FaultServer::Answer accessDenied();      ///< 403 with XML
[[nodiscard]] FaultServer::Answer noSuchBucket();      ///< 404 with XML
[[nodiscard]] FaultServer::Answer forbiddenPage();     ///< 403 with HTML
[[nodiscard]] FaultServer::Answer slowDown();          ///< 503 with XML
[[nodiscard]] FaultServer::Answer slowDown(int retry); ///< with Retry-After
[[nodiscard]] FaultServer::Answer logInPage();         ///< 200 with HTML
[[nodiscard]] FaultServer::Answer problem();           ///< 503 with application/problem+json

} // namespace sim_errors

} // namespace raincast
