# The target header_check compiles every header by itself, each as the only include of a generated source.
file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}"
    "${PROJECT_SOURCE_DIR}/platform/*.h" "${PROJECT_SOURCE_DIR}/gui_lib/*.h" "${PROJECT_SOURCE_DIR}/host/*.h"
    "${PROJECT_SOURCE_DIR}/testkit/*.h" "${PROJECT_SOURCE_DIR}/tests/*.h" "${PROJECT_SOURCE_DIR}/examples/*.h"
    "${PROJECT_SOURCE_DIR}/tools/*.h" "${PROJECT_SOURCE_DIR}/benchmarks/*.h")
set(sources "")
foreach(header IN LISTS headers)
    set(source "${PROJECT_BINARY_DIR}/header_check/${header}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
    list(APPEND sources "${source}")
endforeach()
if(sources)
    add_library(header_check OBJECT EXCLUDE_FROM_ALL ${sources})
    target_include_directories(header_check SYSTEM PRIVATE "${VORLEX_OSG_INCLUDE}" "${VORLEX_BOOST_INCLUDE}")
    target_link_libraries(header_check PRIVATE vorlex_options vorlex_core_dependencies vorlex_text_dependencies
        vorlex_egl_dependencies vorlex_sdl_dependencies)
    target_compile_options(header_check PRIVATE -fsyntax-only)
endif()
