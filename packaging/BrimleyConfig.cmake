# find_package(Brimley): the target Brimley::Brimley, which is the forms and everything below them, for a host of one's own.
# Headers are included as "host/apclass.h".
if(TARGET Brimley::Brimley)
    return()
endif()

include(CMakeFindDependencyMacro)
find_dependency(Threads)
find_dependency(fmt)
find_dependency(PkgConfig)
pkg_check_modules(BRIMLEY_LIBRARIES REQUIRED IMPORTED_TARGET sqlite3 libpq libcrypto pangocairo cairo-pdf libqpdf)

get_filename_component(brimley_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
add_library(Brimley::Brimley STATIC IMPORTED)
set_target_properties(Brimley::Brimley PROPERTIES
    IMPORTED_LOCATION "${brimley_prefix}/lib/libbrimley.a"
    INTERFACE_INCLUDE_DIRECTORIES "${brimley_prefix}/include/brimley"
    INTERFACE_COMPILE_FEATURES cxx_std_20
    INTERFACE_LINK_LIBRARIES "fmt::fmt;Threads::Threads;PkgConfig::BRIMLEY_LIBRARIES")
unset(brimley_prefix)
