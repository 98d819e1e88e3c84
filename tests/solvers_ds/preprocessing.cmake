add_nxl_test(pardiso_containers_test ${CMAKE_CURRENT_LIST_DIR}/containers_test.cpp INTERNAL)
add_nxl_test(pardiso_ordering_test ${CMAKE_CURRENT_LIST_DIR}/ordering_test.cpp INTERNAL)
add_nxl_test(pardiso_mpssym_test ${CMAKE_CURRENT_LIST_DIR}/mpssym_test.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/host_allocator.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/sparse_problems.cpp INTERNAL)
add_nxl_test(pardiso_matching_test ${CMAKE_CURRENT_LIST_DIR}/matching_test.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/sparse_problems.cpp INTERNAL)
