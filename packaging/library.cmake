# libbrimley.a and its headers, for hosts of one's own: the rooms from the host down in one library, without a toolkit.
brimley_rooms_of(rooms brimley_host)
list(TRANSFORM rooms REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
add_library(brimley_library STATIC ${objects})
set_target_properties(brimley_library PROPERTIES OUTPUT_NAME brimley LINKER_LANGUAGE CXX)
# What a debugger wants is not installed; it would name the folders of this build.
add_custom_command(TARGET brimley_library POST_BUILD VERBATIM
    COMMAND ${CMAKE_STRIP} --strip-debug --remove-section=.comment --enable-deterministic-archives $<TARGET_FILE:brimley_library>)
install(TARGETS brimley_library ARCHIVE DESTINATION lib COMPONENT development)

# The headers that a host includes, and those that they include, as they are when they are installed.
install(CODE "set(BRIMLEY_SOURCES ${CMAKE_SOURCE_DIR}/src)" COMPONENT development)
install(SCRIPT install-headers.cmake COMPONENT development)

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/BrimleyConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES BrimleyConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/BrimleyConfigVersion.cmake DESTINATION lib/cmake/Brimley
    COMPONENT development)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples/host DESTINATION share/doc/brimley-dev/examples COMPONENT development)
install(FILES debian/copyright ${changes} DESTINATION share/doc/brimley-dev COMPONENT development)
