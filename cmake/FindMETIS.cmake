# METIS: METIS_INCLUDE_DIR with metis.h, METIS_LIBRARY.
find_path(METIS_INCLUDE_DIR metis.h)
find_library(METIS_LIBRARY metis)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(METIS REQUIRED_VARS METIS_LIBRARY METIS_INCLUDE_DIR)
mark_as_advanced(METIS_INCLUDE_DIR METIS_LIBRARY)
