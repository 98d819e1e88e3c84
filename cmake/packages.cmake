# Debian packages, one for each component of the installation: libnxl0, libnxl-dev, nxl-tools, python3-nxl; libraries and programs are
# stripped, their symbols are in libnxl0-dbgsym and nxl-tools-dbgsym. `./dev package` makes them from a tree configured for
# /usr, where the library's folder is the system's own, and with -g.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_CONTACT "nxl developers <devel@nxl.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_COMPONENTS_ALL runtime dev tools python)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/bench)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(runtime_package libnxl${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared library, and the same under the names that GNU programs expect of a BLAS.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libnxl-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEV_DESCRIPTION "Headers, Fortran interfaces, and what CMake and pkg-config look for.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME nxl-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION math)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "gnuplot-nox, libopenblas0-pthread, libblis4-pthread, libcholmod3 | libcholmod5, bash-completion")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "Programs: nxl-solve (linear systems), nxl-eig (eigenvalues), nxl-fit (least squares), nxl-fir (filters), nxl-info, nxl-bench.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-nxl)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${runtime_package} (>= ${PROJECT_VERSION}), python3, python3-numpy")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS python3-scipy)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION "Python package: sparse systems, iterative solvers, least squares.")

foreach(owner IN ITEMS "runtime ${runtime_package}" "dev libnxl-dev" "tools nxl-tools" "python python3-nxl")
    separate_arguments(owner)
    list(GET owner 0 component)
    list(GET owner 1 package)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
endforeach()
include(CPack)
