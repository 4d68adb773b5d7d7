// SPDX-License-Identifier: MIT
#include "net/http_response.h"

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

} // namespace raincast
