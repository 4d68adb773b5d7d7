# SPDX-License-Identifier: MIT
# The program's words in other languages: translations/raincast_LANGUAGE.ts, compiled into the room
# words.
find_program(RAINCAST_LRELEASE lrelease REQUIRED
    HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}" DOC "Compiles translations (qt6-l10n-tools)")
set(RAINCAST_LANGUAGES es)

set(entries "")
set(compiled "")
foreach(language IN LISTS RAINCAST_LANGUAGES)
    set(source "${CMAKE_SOURCE_DIR}/translations/raincast_${language}.ts")
    set(words "${CMAKE_CURRENT_BINARY_DIR}/raincast_${language}.qm")
    add_custom_command(OUTPUT "${words}"
        COMMAND "${RAINCAST_LRELEASE}" -silent "${source}" -qm "${words}"
        DEPENDS "${source}")
    string(APPEND entries "    <file alias=\"${language}\">raincast_${language}.qm</file>\n")
    list(APPEND compiled "${words}")
endforeach()
file(CONFIGURE OUTPUT translations.qrc @ONLY CONTENT
    "<RCC>\n  <qresource prefix=\"/raincast/words\">\n@entries@  </qresource>\n</RCC>\n")
# Version 1 of the form has no times of files: the same sources give the same bytes.
add_custom_command(OUTPUT translations.cpp
    COMMAND Qt6::rcc --format-version 1 --name raincast_words
        "${CMAKE_CURRENT_BINARY_DIR}/translations.qrc" -o translations.cpp
    DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/translations.qrc" ${compiled})
target_sources(words PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/translations.cpp")
