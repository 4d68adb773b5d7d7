// SPDX-License-Identifier: MIT
#include "net/http_response.h"

#include "core/text.h"

#include <QStringList>

namespace raincast {

QString outcomeOf(const HttpResponse& response) {
    QStringList outcome;
    if (response.answered()) {
        outcome += QString::number(response.status);
    }
    for (const auto& fault : {response.failure, response.refusal}) {
        if (fault) {
            outcome += *fault;
        }
    }
    return outcome.join(QStringLiteral(", "));
}

QString troubleOf(const HttpResponse& response, const QString& server) {
    const QString host = Text::of(server); // the program's own servers have names
    if (response.timedOut || response.connectingFailed) {
        return Text::tr("%1 does not answer.").arg(host);
    }
    if (response.unchanged) {
        return {};
    }
    if (response.status >= kFirstFailingStatus) {
        return Text::tr("%1 answers with error %2.").arg(host).arg(response.status);
    }
    if (response.refusal) {
        return Text::tr("%1 sends something else: %2.").arg(host, *response.refusal);
    }
    return response.failure || !response.answered()
               ? Text::tr("The connection to %1 broke.").arg(host)
               : QString();
}

} // namespace raincast
