# Third-party libraries, grouped by who may use them. tools/install-deps.sh installs their packages.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

function(vorlex_dependency_group name)
    add_library(${name} INTERFACE)
    foreach(module IN LISTS ARGN)
        string(MAKE_C_IDENTIFIER "VORLEX_${module}" variable)
        pkg_check_modules(${variable} REQUIRED IMPORTED_TARGET GLOBAL "${module}")
        target_link_libraries(${name} INTERFACE PkgConfig::${variable})
    endforeach()
endfunction()

# Lua compiled as C++: its errors are exceptions, so the destructors of the readers run.
vorlex_dependency_group(vorlex_core_dependencies lua5.1-c++)
vorlex_dependency_group(vorlex_image_dependencies spng libturbojpeg)
vorlex_dependency_group(vorlex_text_dependencies freetype2 harfbuzz fontconfig)
vorlex_dependency_group(vorlex_gl_dependencies epoxy)
vorlex_dependency_group(vorlex_egl_dependencies epoxy egl)
vorlex_dependency_group(vorlex_sdl_dependencies sdl2 epoxy)
target_link_libraries(vorlex_text_dependencies INTERFACE vorlex_image_dependencies)
target_link_libraries(vorlex_core_dependencies INTERFACE Threads::Threads)

find_path(VORLEX_OSG_INCLUDE osg/Matrixf REQUIRED)
find_path(VORLEX_BOOST_INCLUDE boost/container/small_vector.hpp REQUIRED)
find_library(VORLEX_OSG_LIBRARY osg REQUIRED)
