# One place for the warning set and the Qt string-safety defines; every target links it PRIVATE.
add_library(tarnwick_warnings INTERFACE)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(tarnwick_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override -Wzero-as-null-pointer-constant
        -Wformat=2 -Wimplicit-fallthrough -Wundef)
    # -Wnull-dereference is left out: at -O2, GCC 12 reports it inside Qt's own container headers
    # (QArrayDataPointer) for ordinary copies, which no code of ours can silence.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(tarnwick_warnings INTERFACE -Wlogical-op -Wduplicated-cond)
    endif()
endif()

target_compile_definitions(tarnwick_warnings INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH)
