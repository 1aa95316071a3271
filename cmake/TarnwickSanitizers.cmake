# Sanitizers apply to every target of the build, so that a library and its tests agree.
if(TARNWICK_SANITIZERS)
    list(JOIN TARNWICK_SANITIZERS "," _tarnwick_sanitizers)
    add_compile_options(-fsanitize=${_tarnwick_sanitizers} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${_tarnwick_sanitizers})
    if("undefined" IN_LIST TARNWICK_SANITIZERS)
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()
