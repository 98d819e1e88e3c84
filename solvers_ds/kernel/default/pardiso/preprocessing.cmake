# Containers, matching and orderings of the sparse direct solver.
target_sources(nxl_objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/adjacency.cpp
    ${CMAKE_CURRENT_LIST_DIR}/augmenting_paths.cpp
    ${CMAKE_CURRENT_LIST_DIR}/bitvec.cpp
    ${CMAKE_CURRENT_LIST_DIR}/compressed_graph.cpp
    ${CMAKE_CURRENT_LIST_DIR}/constrained_minimum_degree.cpp
    ${CMAKE_CURRENT_LIST_DIR}/matching.cpp
    ${CMAKE_CURRENT_LIST_DIR}/minimum_degree.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mpssym.cpp
    ${CMAKE_CURRENT_LIST_DIR}/nested_dissection.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ordering.cpp
    ${CMAKE_CURRENT_LIST_DIR}/perm.cpp
    ${CMAKE_CURRENT_LIST_DIR}/quotient_graph.cpp
    ${CMAKE_CURRENT_LIST_DIR}/separators.cpp
    ${CMAKE_CURRENT_LIST_DIR}/smat.cpp
    ${CMAKE_CURRENT_LIST_DIR}/symmetric_pattern.cpp)
