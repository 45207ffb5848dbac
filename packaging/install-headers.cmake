# Installs the headers that a host includes, and those that they include in turn, from BRIMLEY_SOURCES. Engines, and what draws
# pages, are behind them and stay private.
cmake_minimum_required(VERSION 3.25)
file(GLOB forms RELATIVE ${BRIMLEY_SOURCES} ${BRIMLEY_SOURCES}/*/apform_*.h ${BRIMLEY_SOURCES}/*/*/apform_*.h
    ${BRIMLEY_SOURCES}/*/apreport_*.h ${BRIMLEY_SOURCES}/*/*/apreport_*.h)
set(waiting host/apclass.h masters/master_form.h invoices/commands.h kernel/tables/company_tables.h frame/platform_path.h
    ${forms})
set(headers "")
while(waiting)
    list(POP_FRONT waiting header)
    if(NOT header IN_LIST headers)
        list(APPEND headers ${header})
        file(STRINGS ${BRIMLEY_SOURCES}/${header} included REGEX "^#include \"")
        list(TRANSFORM included REPLACE "^#include \"([^\"]+)\".*" "\\1")
        list(APPEND waiting ${included})
    endif()
endwhile()
foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH folder)
    file(INSTALL ${BRIMLEY_SOURCES}/${header} DESTINATION ${CMAKE_INSTALL_PREFIX}/include/brimley/${folder})
endforeach()
