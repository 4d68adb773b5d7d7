// SPDX-License-Identifier: MIT
// Whatever the environment says of the user's language, a variable a line.
#include "words/user_language.h"

#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    Input input(data, size);
    for (const char* name :
         {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_NUMERIC", "LC_TIME", "LANG"}) {
        qputenv(name, input.line().replace('\0', ""));
    }
    for (const QString& language : userLanguages()) {
        require(!language.isEmpty());
    }
    return 0;
}
