// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace raincast {

// The language that the user reads, and how the user writes numbers and times: as the environment
// says, by LANGUAGE, LC_ALL, LC_MESSAGES, LC_NUMERIC, LC_TIME and LANG.

/// The user's languages, the dearest first: {"es_MX", "es", "en"} for LANGUAGE=es_MX:en. Empty
/// where the environment asks for the C locale.
[[nodiscard]] QStringList userLanguages();

/// Makes Text speak the first of these languages that the program has words in; English needs none.
/// To be called once, before any text; no application object is needed.
void useUserLanguage();

/// Makes Qt's own texts, such as those of an edit field's menu, speak that language, where Qt's
/// translations are installed. The application object must be there.
void useUserLanguageInQt();

} // namespace raincast
