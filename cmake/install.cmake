# What `cmake --install` puts where: the library (component runtime), and what its users compile against and what finds it
# for them (component dev). The programs (component tools) and the Python package
# (component python) are installed where they are built.
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}") # of the programs, so that any prefix works

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/nxl)
set(generated ${PROJECT_BINARY_DIR}/install)

install(TARGETS nxl nxl_gnu EXPORT nxl
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
set_target_properties(nxl PROPERTIES INSTALL_RPATH "")
set_target_properties(nxl_gnu PROPERTIES INSTALL_RPATH "$ORIGIN") # preloaded, it finds the other beside itself
install(FILES ${PROJECT_SOURCE_DIR}/include/nxl.h ${PROJECT_SOURCE_DIR}/include/nxl.hpp ${PROJECT_SOURCE_DIR}/include/nxl_status.hpp
    ${PROJECT_SOURCE_DIR}/include/nxl_least_squares.hpp ${PROJECT_SOURCE_DIR}/include/nxl_eigen.hpp
    ${PROJECT_SOURCE_DIR}/include/nxl.f90 ${PROJECT_SOURCE_DIR}/include/nxl_cblas.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

# find_package(nxl) gives the targets nxl::nxl and nxl::nxl_gnu, and nxl_FORTRAN_MODULE_SOURCE, the file to compile with a
# Fortran program.
install(EXPORT nxl NAMESPACE nxl:: FILE nxl-targets.cmake DESTINATION ${package_dir} COMPONENT dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/nxl-config.cmake.in ${generated}/nxl-config.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${generated}/nxl-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${generated}/nxl-config.cmake ${generated}/nxl-config-version.cmake DESTINATION ${package_dir}
    COMPONENT dev)

# Paths in the .pc files start from the folder of the file itself: the tree can be installed anywhere, and moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(package IN ITEMS nxl nxl_gnu)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in ${generated}/${package}.pc @ONLY)
    install(FILES ${generated}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()
