// SPDX-License-Identifier: MIT
#include "live_sim/live_sim.h"

#include "core/utc_date_time.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QLocale>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace raincast {

namespace {

QDateTime utc(FileTime time) {
    return utcDateTime(time);
}

QByteArray text(FileTime time, const char* format) {
    return QLocale::c().toString(utc(time), QLatin1String(format)).toLatin1();
}

QByteArray httpTime(FileTime time) {
    return text(time, "ddd, dd MMM yyyy HH:mm:ss") + " GMT";
}

QByteArray parameter(const QUrlQuery& query, const char* name) {
    return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded).toUtf8();
}

constexpr char kXml[] = "Content-Type: application/xml\r\n";
constexpr char kHtml[] = "Content-Type: text/html\r\n";

QByteArray xmlError(const QByteArray& code, const QByteArray& message) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Error><Code>" + code + "</Code><Message>" +
           message + "</Message><RequestId>1</RequestId></Error>";
}

FaultServer::Answer refuseOrigin() {
    return answers::respond(403, "<html><body>Forbidden</body></html>", kHtml);
}

} // namespace

QByteArray headerIn(const QByteArray& head, const QByteArray& name) {
    for (const QByteArray& line : head.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0) {
            return line.sliced(colon + 1).trimmed();
        }
    }
    return {};
}

SimProvider::SimProvider() {
    m_server.choose([this](const QByteArray& head) { return choose(head); });
}

FaultServer::Answer SimProvider::choose(const QByteArray& head) {
    const QByteArray target = requestPath(head).toUtf8();
    const std::lock_guard lock(m_mutex);
    const bool isBroken = m_fault && (m_faultPart.isEmpty() || target.contains(m_faultPart));
    const FaultServer::Answer answered = isBroken ? *m_fault : answer(target, head);
    return [answered, wait = m_delay](FaultConnection& connection) {
        if (wait.count() == 0 || connection.pause(wait)) {
            answered(connection);
        }
    };
}

std::vector<QByteArray> SimProvider::targets() const {
    std::vector<QByteArray> result;
    for (const QByteArray& head : m_server.requests()) {
        result.push_back(requestPath(head).toUtf8());
    }
    return result;
}

int SimProvider::count(const QByteArray& part) const {
    const auto all = targets();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [&](const QByteArray& target) {
        return part.isEmpty() || target.contains(part);
    }));
}

void SimProvider::breakBy(std::optional<FaultServer::Answer> answer, const QByteArray& part) {
    const std::lock_guard lock(m_mutex);
    m_fault = std::move(answer);
    m_faultPart = part;
}

void SimProvider::delay(std::chrono::milliseconds time) {
    const std::lock_guard lock(m_mutex);
    m_delay = time;
}

void SimBucket::put(const std::string& key, const QByteArray& bytes, FileTime modified) {
    const std::lock_guard lock(m_mutex);
    m_objects[key] = {
        bytes, QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex(), modified};
}

void SimBucket::remove(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    m_objects.erase(key);
}

void SimBucket::useRawTags(bool raw) {
    const std::lock_guard lock(m_mutex);
    m_rawTags = raw;
}

void SimBucket::setPageSize(int size) {
    const std::lock_guard lock(m_mutex);
    m_pageSize = size;
}

FaultServer::Answer SimBucket::answer(const QByteArray& target, const QByteArray& head) {
    if (!headerIn(head, "Origin").isEmpty()) {
        return refuseOrigin();
    }
    const QUrl url = QUrl::fromEncoded(target);
    if (url.path() == u"/" && url.hasQuery()) {
        return answers::respond(200, listing(url.query(QUrl::FullyEncoded).toUtf8()), kXml);
    }
    const auto found = m_objects.find(url.path().mid(1).toStdString());
    if (found == m_objects.end()) {
        return answers::respond(
            404, xmlError("NoSuchKey", "The specified key does not exist."), kXml
        );
    }
    const Object& object = found->second;
    const QByteArray tag = '"' + object.etag + '"';
    const QByteArray headers =
        "ETag: " + tag + "\r\nLast-Modified: " + httpTime(object.modified) + "\r\n";
    if (headerIn(head, "If-None-Match") == tag) {
        return answers::respond(304, {}, headers);
    }
    return answers::respond(200, object.bytes, headers);
}

QByteArray SimBucket::listing(const QByteArray& text) const {
    const QUrlQuery query(QString::fromUtf8(text));
    const std::string prefix = parameter(query, "prefix").toStdString();
    QByteArray after = parameter(query, "start-after");
    // A token has signs that must be encoded in a target, and in XML.
    if (const QByteArray token = parameter(query, "continuation-token"); !token.isEmpty()) {
        after = QByteArray::fromHex(token.sliced(4));
    }
    QByteArray contents;
    int count = 0;
    std::string last;
    bool isTruncated = false;
    const QByteArray quote = m_rawTags ? "\"" : "&quot;";
    for (auto at = m_objects.lower_bound(prefix);
         at != m_objects.end() && at->first.starts_with(prefix); ++at) {
        if (at->first <= after.toStdString()) {
            continue;
        }
        if (count == m_pageSize) {
            isTruncated = true;
            break;
        }
        ++count;
        last = at->first;
        const Object& object = at->second;
        contents += "<Contents><Key>" + QByteArray::fromStdString(at->first) +
                    "</Key><LastModified>" +
                    raincast::text(object.modified, "yyyy-MM-ddTHH:mm:ss") +
                    ".000Z</LastModified><ETag>" + quote + object.etag + quote + "</ETag><Size>" +
                    QByteArray::number(object.bytes.size()) +
                    "</Size><StorageClass>STANDARD</StorageClass></Contents>";
    }
    QByteArray next;
    if (isTruncated) {
        next = "<NextContinuationToken>/+=&amp;" + QByteArray::fromStdString(last).toHex() +
               "</NextContinuationToken>";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ListBucketResult "
           "xmlns=\"http://s3.amazonaws.com/doc/2006-03-01/\"><Name>unidata-nexrad-level3</Name>"
           "<Prefix>" +
           QByteArray::fromStdString(prefix) + "</Prefix><KeyCount>" + QByteArray::number(count) +
           "</KeyCount><MaxKeys>" + QByteArray::number(m_pageSize) + "</MaxKeys><IsTruncated>" +
           (isTruncated ? "true" : "false") + "</IsTruncated>" + next + contents +
           "</ListBucketResult>";
}

void SimRing::put(
    const QByteArray& product, const QByteArray& site, int number, FileTime modified,
    const QByteArray& bytes, bool isLast
) {
    const std::lock_guard lock(m_mutex);
    auto& folder = m_folders["/DS." + product + "/SI." + site + '/'];
    const QByteArray name = "sn." + QByteArray::number(number).rightJustified(4, '0');
    folder[name] = {modified, bytes};
    if (isLast) {
        folder["sn.last"] = {modified, bytes};
    }
}

void SimRing::setForm(Form form) {
    const std::lock_guard lock(m_mutex);
    m_form = form;
}

void SimRing::honourConditions(bool honour) {
    const std::lock_guard lock(m_mutex);
    m_honoursConditions = honour;
}

FaultServer::Answer SimRing::answer(const QByteArray& target, const QByteArray& head) {
    if (!headerIn(head, "Origin").isEmpty()) {
        return refuseOrigin();
    }
    const qsizetype slash = target.lastIndexOf('/') + 1;
    const auto folder = m_folders.find(target.first(slash));
    const QByteArray name = target.sliced(slash);
    if (folder == m_folders.end() || (!name.isEmpty() && !folder->second.contains(name))) {
        return answers::respond(404, "<html><body>Not Found</body></html>", kHtml);
    }
    if (name.isEmpty()) {
        return answers::respond(200, page(folder->second), kHtml);
    }
    const File& file = folder->second.at(name);
    const QByteArray modified = httpTime(file.modified);
    const QByteArray headers = "Last-Modified: " + modified + "\r\n";
    if (m_honoursConditions && headerIn(head, "If-Modified-Since") == modified) {
        return answers::respond(304, {}, headers);
    }
    return answers::respond(200, file.bytes, headers);
}

QByteArray SimRing::page(const std::map<QByteArray, File>& files) const {
    QByteArray rows;
    for (const auto& [name, file] : files) {
        if (m_form == Form::lines) {
            rows += "-rw-r--r--   1 ftp      ftp         44112 " +
                    text(file.modified, "MMM dd HH:mm") + ' ' + name + "\n";
            continue;
        }
        const char* const format = m_form == Form::table ? "dd-MMM-yyyy HH:mm" : "yyyy-MM-dd HH:mm";
        rows += "<tr><td><a href=\"" + name + "\">" + name + "</a></td><td align=\"right\">" +
                text(file.modified, format) + "  </td><td align=\"right\"> 44K</td></tr>\n";
    }
    return m_form == Form::lines ? rows : "<html><body><table>\n" + rows + "</table></body></html>";
}

void SimAlerts::setAlerts(const QByteArray& json) {
    const std::lock_guard lock(m_mutex);
    m_alerts = json;
}

void SimAlerts::setStormWarnings(const QByteArray& json) {
    const std::lock_guard lock(m_mutex);
    m_storms = json;
}

FaultServer::Answer SimAlerts::answer(const QByteArray& target, const QByteArray& head) {
    const bool isOther = target.startsWith("/geojson/sbw.geojson");
    if (!isOther && !target.startsWith("/alerts/active")) {
        return answers::respond(
            404, R"({"status":404})", "Content-Type: application/problem+json\r\n"
        );
    }
    // One that does not say who asks is refused.
    if (headerIn(head, "User-Agent").isEmpty()) {
        return sim_errors::forbiddenPage();
    }
    const QByteArray& body = isOther ? m_storms : m_alerts;
    const QByteArray tag =
        '"' + QCryptographicHash::hash(body, QCryptographicHash::Md5).toHex() + '"';
    const QByteArray headers = "ETag: " + tag + "\r\nContent-Type: application/geo+json\r\n";
    if (headerIn(head, "If-None-Match") == tag) {
        return answers::respond(304, {}, headers);
    }
    return answers::respond(200, body, headers);
}

namespace sim_errors {

FaultServer::Answer accessDenied() {
    return answers::respond(403, xmlError("AccessDenied", "Access Denied"), kXml);
}

FaultServer::Answer noSuchBucket() {
    return answers::respond(
        404, xmlError("NoSuchBucket", "The specified bucket does not exist"), kXml
    );
}

FaultServer::Answer forbiddenPage() {
    return answers::respond(
        403, "<html><head><title>Access Denied</title></head><body>Reference #18.1</body></html>",
        kHtml
    );
}

FaultServer::Answer slowDown() {
    return answers::respond(503, xmlError("SlowDown", "Please reduce your request rate."), kXml);
}

FaultServer::Answer slowDown(int retry) {
    return answers::respond(
        503, xmlError("SlowDown", "Please reduce your request rate."),
        "Retry-After: " + QByteArray::number(retry) + "\r\n"
    );
}

FaultServer::Answer logInPage() {
    return answers::respond(200, "<html><body>Log in to use this network</body></html>", kHtml);
}

FaultServer::Answer problem() {
    return answers::respond(
        503, R"({"title":"Service Unavailable","status":503})",
        "Content-Type: application/problem+json\r\n"
    );
}

} // namespace sim_errors

} // namespace raincast
