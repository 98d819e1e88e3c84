add_nxl_test(pardiso_containers_test ${CMAKE_CURRENT_LIST_DIR}/containers_test.cpp INTERNAL)
