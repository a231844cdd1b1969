# Compile settings every target of ours shares: warnings, Qt's strict string
# casts, and the sanitizers when asked for.
add_library(tessarine_options INTERFACE)
target_compile_options(tessarine_options INTERFACE -Wall -Wextra)
target_compile_definitions(tessarine_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    TESSARINE_VERSION="${PROJECT_VERSION}")
if(TESSARINE_SANITIZE)
    target_compile_options(tessarine_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                       -fno-sanitize-recover=undefined)
    target_link_options(tessarine_options INTERFACE -fsanitize=address,undefined)
    target_compile_definitions(tessarine_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# tessarine_add_library(name SOURCES ... LINKS ...): one static library of a layer.
function(tessarine_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC tessarine_options ${ARG_LINKS})
endfunction()

if(TESSARINE_FUZZ)
    target_compile_options(tessarine_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
